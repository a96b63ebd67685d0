// Rows of the appliance data store, as its stand-in delivers them, and one of
// the readers of the tables. The input's first line picks the reader: a
// driver request (a line that starts with "{"), answered by the customized
// driver-response retriever, or one of "music", "timer", "facets" (morning
// brief, shopping list, status), "nlu" (the NLU parameter groups of the
// recipe app, the morning brief and the shopping list) and "mode"
// (the recognition mode); any other line picks one of these five by its length.
// Each further line is one row, "Table|column=value|column=value..."; a value
// written "#123" is stored as an integer. A table that the input gives no row
// is empty; a line "-Table" takes the table out of the store.
#include "FuzzSupport.h"

#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"
#include "RetrieveImpl/DA/DaCustomizedRecognitionModeRetriever.h"
#include "RetrieveImpl/DA/DaDeviceMorningBriefDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceMusicDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceShoppingListDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceStatusDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceTimerDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenMornigBrief.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenRecipe.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenShoppingList.h"
#include "vappliance/Device.h"

#include <orvane-parser/TimerData.h>

#include <json-glib/json-glib.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace {

const char* const kTables[] = {"Music", "Timer", "Task", "Profile", "Commerce", "MorningBrief", "Recipe", "ShoppingList"};

struct Row {
    std::vector<std::pair<std::string, std::string>> cells;
};

// A table of the store. Its columns are those that the seeds give, which are
// those of the apps that publish the tables; a cell of another name is left
// out, as a column that its row does not give. Every table is in the store
// from the start: under its own name, or, while an input takes it out, empty
// and under its name with kAway before it, where a reader finds it missing.
// Its statements are prepared once, with the table. So the store's schema
// keeps its tables and columns, the readers' connections keep their
// statements, and an input frees what it allocates: an input that allocates
// more is run again by libFuzzer, which then looks for leaks. A change of the
// schema costs more than a whole input otherwise (every connection reads the
// schema again), hence only the inputs that say so take a table out.
struct Table {
    std::vector<std::string> columns;
    bool present = true;             // under its own name
    sqlite3_stmt* clear = nullptr;
    sqlite3_stmt* insert = nullptr;  // every column; one that the row does not give is NULL
};

const std::string kAway = "away_";
std::map<std::string, Table> gTables;
// The store's writer, open from input to input.
sqlite3* gStore = nullptr;
sqlite3_stmt* gBegin = nullptr;
sqlite3_stmt* gCommit = nullptr;

void exec(const std::string& sql)
{
    sqlite3_exec(gStore, sql.c_str(), nullptr, nullptr, nullptr);
}

sqlite3_stmt* prepare(const std::string& sql)
{
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(gStore, sql.c_str(), -1, &statement, nullptr);
    return statement;
}

void run(sqlite3_stmt* statement)
{
    if (!statement)
        return;
    sqlite3_step(statement);
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
}

// The input's tables: the rows of each, and those it takes out of the store.
struct Tables {
    std::map<std::string, std::vector<Row>> rows;
    std::set<std::string> missing;
};

// The tables of the input's lines, the reader's line left out.
Tables tablesOf(const std::vector<std::string>& lines, bool allColumns)
{
    Tables tables;
    for (size_t l = 1; l < lines.size(); ++l) {
        if (!lines[l].empty() && lines[l][0] == '-' && gTables.count(lines[l].substr(1))) {
            tables.missing.insert(lines[l].substr(1));
            continue;
        }
        const std::vector<std::string> fields = marlfuzz::splitOn(lines[l], '|');
        const auto table = gTables.find(fields[0]);
        if (table == gTables.end())
            continue;
        const std::vector<std::string>& columns = table->second.columns;
        Row row;
        for (size_t i = 1; i < fields.size() && row.cells.size() < 64; ++i) {
            const auto equals = fields[i].find('=');
            if (equals == std::string::npos || equals == 0)
                continue;
            std::string name = fields[i].substr(0, equals);
            if (allColumns || std::count(columns.begin(), columns.end(), name))
                row.cells.emplace_back(std::move(name), fields[i].substr(equals + 1));
        }
        tables.rows[fields[0]].push_back(row);
    }
    return tables;
}

void learnColumns()
{
    for (const char* table : kTables)
        gTables[table];
    for (const auto& entry : std::filesystem::directory_iterator(MARL_FUZZ_DIR "/corpus/data-store")) {
        std::ifstream file(entry.path());
        std::stringstream text;
        text << file.rdbuf();
        for (const auto& table : tablesOf(marlfuzz::splitOn(text.str(), '\n'), true).rows) {
            std::vector<std::string>& columns = gTables[table.first].columns;
            for (const Row& row : table.second)
                for (const auto& cell : row.cells)
                    if (!std::count(columns.begin(), columns.end(), cell.first))
                        columns.push_back(cell.first);
        }
    }
    // A table needs a column; one that no row fills is never delivered.
    for (auto& table : gTables)
        if (table.second.columns.empty())
            table.second.columns.push_back("unused");
}

// Every table, empty, in place of the fuzz device's tables of these names.
void createTables()
{
    gBegin = prepare("BEGIN");
    gCommit = prepare("COMMIT");
    for (auto& entry : gTables) {
        Table& table = entry.second;
        const std::string name = vapp::quoteSqlIdentifier(entry.first);
        std::string columns;
        std::string marks;
        for (const auto& column : table.columns) {
            columns += (columns.empty() ? "" : ", ") + vapp::quoteSqlIdentifier(column);
            marks += marks.empty() ? "?" : ", ?";
        }
        exec("DROP TABLE IF EXISTS " + name);
        exec("CREATE TABLE " + name + " (" + columns + ")");
        table.clear = prepare("DELETE FROM " + name);
        table.insert = prepare("INSERT INTO " + name + " (" + columns + ") VALUES (" + marks + ")");
    }
}

void writeStore(const std::vector<std::string>& lines)
{
    const Tables tables = tablesOf(lines, false);
    run(gBegin);
    for (auto& entry : gTables) {
        Table& table = entry.second;
        if (table.present)
            run(table.clear);
        const bool wanted = tables.missing.count(entry.first) == 0;
        if (wanted != table.present) {
            const std::string name = vapp::quoteSqlIdentifier(entry.first);
            const std::string away = vapp::quoteSqlIdentifier(kAway + entry.first);
            exec("ALTER TABLE " + (wanted ? away + " RENAME TO " + name : name + " RENAME TO " + away));
            table.present = wanted;
        }
    }
    for (const auto& entry : tables.rows) {
        Table& table = gTables[entry.first];
        if (!table.present)
            continue;
        const std::vector<std::string>& columns = table.columns;
        if (!table.insert)
            continue;
        for (const Row& row : entry.second) {
            for (const auto& cell : row.cells) {
                const auto column = std::find(columns.begin(), columns.end(), cell.first);
                const int index = static_cast<int>(column - columns.begin()) + 1;
                const std::string& value = cell.second;
                if (!value.empty() && value[0] == '#')
                    sqlite3_bind_int64(table.insert, index, std::strtoll(value.c_str() + 1, nullptr, 10));
                else
                    sqlite3_bind_text(table.insert, index, value.data(), static_cast<int>(value.size()),
                                      SQLITE_TRANSIENT);
            }
            run(table.insert);
        }
    }
    run(gCommit);
}

void readMusic()
{
    DaDeviceMusicDataRetrieverImpl music;
    music.support();
    music.appInstalled();
    music.currentMusicAppLoggedIn();
    music.getCurrentSongFavoriteMark();
    music.getCurrentRadioFavoriteMark();
    music.getMoodGridCataloged();
    music.getCurrentMusicAppSlept();
    music.getCurrentMusicAppMute();
    music.getCurrentMusicPlayerVolumeMaxLevel();
    music.getCurrentMusicPlayerVolumeLevel();
    music.getCurrentMusicPlayerName();
    music.getCurrentSongAlbumName();
    music.getCurrentSongArtistName();
    music.getCurrentSongGenreName();
    music.getCurrentSongName();
    music.getCurrentStationName();
    music.getLastStationName();
    music.getCurrentMusicPlayerStatus();
}

void readTimers()
{
    DaDeviceTimerDataRetrieverImpl timer;
    timer.appInstalled();
    timer.support();
    timer.getTimerAppName();
    timer.getTimerTime();
    timer.getTimerStatus();
    std::vector<TimerData*> list;
    timer.getTimerList(&list);
    for (TimerData* item : list)
        delete item;
    timer.getCurrentTimerCount();
    timer.getMaxTimerCount();
    timer.getRunningTimerCount();
    timer.getCreatableTimerId();
    timer.getCurrentTimerId();
}

void readFacets()
{
    DaDeviceMorningBriefDataRetrieverImpl().appRunning();
    DaDeviceShoppingListDataRetrieverImpl().currentShoppingListSize();
    DaDeviceStatusDataRetrieverImpl().useCustomizedNluParams();
}

// The groups that read the store; the system group reads it only through the
// engine's own music and timer retrievers, which "music" and "timer" read.
void readNluParams()
{
    DANluParamsGenRecipe().getNluParams();
    DANluParamsGenMorningBrief().getNluParams();
    DANluParamsGenShoppingList().getNluParams();
}

void readRecognitionMode()
{
    if (JsonObject* mode = DaCustomizedRecognitionModeRetriever().getRecognitionMode())
        json_object_unref(mode);
}

const std::pair<const char*, void (*)()> kReaders[] = {
    {"music", readMusic}, {"timer", readTimers}, {"facets", readFacets}, {"nlu", readNluParams},
    {"mode", readRecognitionMode}};

void read(const std::string& what)
{
    if (!what.empty() && what[0] == '{') {
        DaCustomizedDriverResponseRetriever().getDriverResponse(what);
        return;
    }
    for (const auto& reader : kReaders) {
        if (what == reader.first) {
            reader.second();
            return;
        }
    }
    kReaders[what.size() % (sizeof kReaders / sizeof kReaders[0])].second();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    marlfuzz::loadEngineOnTheFuzzDevice();
    learnColumns();
    // The changes need not outlive the process (the device is removed at its
    // end): no journal on disk, no waiting for the disk.
    if (sqlite3_open(vapp::datastorePath().c_str(), &gStore) != SQLITE_OK)
        std::abort();
    exec("PRAGMA journal_mode = MEMORY");
    exec("PRAGMA synchronous = OFF");
    createTables();
    marlfuzz::runEmptyInput(LLVMFuzzerTestOneInput);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::vector<std::string> lines =
        marlfuzz::splitOn(std::string(reinterpret_cast<const char*>(data), size), '\n');
    writeStore(lines);
    read(lines[0]);
    return 0;
}
