// Rows of the appliance data store, as its stand-in delivers them, and one of
// the readers of the tables. The input's first line picks the reader: a
// driver request (a line that starts with "{"), answered by the customized
// driver-response retriever, or one of "music", "timer", "facets" (morning
// brief, shopping list, status), "nlu" (the NLU parameter groups of the
// recipe app, the morning brief and the shopping list) and "mode"
// (the recognition mode); any other line picks one of these five by its length.
// Each further line is one row, "Table|column=value|column=value..."; a value
// written "#123" is stored as an integer. A table the input does not name is
// missing from the store.
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

// The columns of each table: those that the seeds give, which are those of
// the apps that publish the tables. A table keeps its columns from input to
// input, as its app defines them, so the store's readers keep their prepared
// statements and an input frees what it allocates; a cell of another name is
// left out, as a column that its row does not give.
std::map<std::string, std::vector<std::string>> gColumns;
// The store's writer, open from input to input, and the tables in the store.
sqlite3* gStore = nullptr;
std::set<std::string> gPresent;

void exec(sqlite3* db, const std::string& sql)
{
    sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
}

// Table name to its rows, the reader's line left out.
std::map<std::string, std::vector<Row>> rowsOf(const std::vector<std::string>& lines, bool allColumns)
{
    std::map<std::string, std::vector<Row>> tables;
    for (size_t l = 1; l < lines.size(); ++l) {
        const std::vector<std::string> fields = marlfuzz::splitOn(lines[l], '|');
        const auto columns = gColumns.find(fields[0]);
        if (columns == gColumns.end())
            continue;
        Row row;
        for (size_t i = 1; i < fields.size() && row.cells.size() < 64; ++i) {
            const auto equals = fields[i].find('=');
            if (equals == std::string::npos || equals == 0)
                continue;
            std::string name = fields[i].substr(0, equals);
            if (allColumns || std::count(columns->second.begin(), columns->second.end(), name))
                row.cells.emplace_back(std::move(name), fields[i].substr(equals + 1));
        }
        tables[fields[0]].push_back(row);
    }
    return tables;
}

void learnColumns()
{
    for (const char* table : kTables)
        gColumns[table];
    for (const auto& entry : std::filesystem::directory_iterator(MARL_FUZZ_DIR "/corpus/data-store")) {
        std::ifstream file(entry.path());
        std::stringstream text;
        text << file.rdbuf();
        for (const auto& table : rowsOf(marlfuzz::splitOn(text.str(), '\n'), true))
            for (const Row& row : table.second)
                for (const auto& cell : row.cells)
                    if (!std::count(gColumns[table.first].begin(), gColumns[table.first].end(), cell.first))
                        gColumns[table.first].push_back(cell.first);
    }
    // A table needs a column; one that no row fills is never delivered.
    for (auto& table : gColumns)
        if (table.second.empty())
            table.second.push_back("unused");
}

void writeStore(const std::vector<std::string>& lines)
{
    const std::map<std::string, std::vector<Row>> tables = rowsOf(lines, false);
    sqlite3* db = gStore;
    exec(db, "BEGIN");
    for (const auto& columns : gColumns) {
        const std::string name = vapp::quoteSqlIdentifier(columns.first);
        const bool wanted = tables.count(columns.first) != 0;
        if (wanted && !gPresent.count(columns.first)) {
            std::string create;
            for (const auto& column : columns.second)
                create += (create.empty() ? "" : ", ") + vapp::quoteSqlIdentifier(column);
            exec(db, "CREATE TABLE " + name + " (" + create + ")");
            gPresent.insert(columns.first);
        } else if (!wanted && gPresent.erase(columns.first)) {
            exec(db, "DROP TABLE " + name);
        } else if (wanted) {
            exec(db, "DELETE FROM " + name);
        }
    }
    // Rows that fill the same columns share their statement within an input.
    std::map<std::string, sqlite3_stmt*> inserts;
    for (const auto& table : tables) {
        const std::string name = vapp::quoteSqlIdentifier(table.first);
        for (const Row& row : table.second) {
            std::string names;
            std::string marks;
            for (const auto& cell : row.cells) {
                names += (names.empty() ? "" : ", ") + vapp::quoteSqlIdentifier(cell.first);
                marks += marks.empty() ? "?" : ", ?";
            }
            const std::string insert = row.cells.empty()
                                           ? "INSERT INTO " + name + " DEFAULT VALUES"
                                           : "INSERT INTO " + name + " (" + names + ") VALUES (" + marks + ")";
            sqlite3_stmt*& statement = inserts[insert];
            if (!statement && sqlite3_prepare_v2(db, insert.c_str(), -1, &statement, nullptr) != SQLITE_OK)
                continue;
            sqlite3_reset(statement);
            int index = 1;
            for (const auto& cell : row.cells) {
                const std::string& value = cell.second;
                if (!value.empty() && value[0] == '#')
                    sqlite3_bind_int64(statement, index++, std::strtoll(value.c_str() + 1, nullptr, 10));
                else
                    sqlite3_bind_text(statement, index++, value.data(), static_cast<int>(value.size()),
                                      SQLITE_TRANSIENT);
            }
            sqlite3_step(statement);
        }
    }
    for (const auto& insert : inserts)
        sqlite3_finalize(insert.second);
    exec(db, "COMMIT");
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
    exec(gStore, "PRAGMA journal_mode = MEMORY");
    exec(gStore, "PRAGMA synchronous = OFF");
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
