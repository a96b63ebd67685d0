// Rows of the appliance data store, as its stand-in delivers them, read by
// every retriever and generator that reads a table. Each input line is one
// row, "Table|column=value|column=value..."; a value written "#123" is stored
// as an integer. The eight tables are made afresh from each input, so a table
// the input does not name is missing.
#include "FuzzSupport.h"

#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"
#include "RetrieveImpl/DA/DaCustomizedNluParamsRetriever.h"
#include "RetrieveImpl/DA/DaCustomizedRecognitionModeRetriever.h"
#include "RetrieveImpl/DA/DaDeviceMorningBriefDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceMusicDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceShoppingListDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceStatusDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceTimerDataRetrieverImpl.h"
#include "vappliance/Device.h"

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

std::vector<std::string> gRequests;  // the driver requests of the seed corpus

struct Row {
    std::vector<std::pair<std::string, std::string>> cells;
};

void exec(sqlite3* db, const std::string& sql)
{
    sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
}

void writeStore(const std::string& input)
{
    std::map<std::string, std::vector<Row>> tables;
    const std::set<std::string> known(std::begin(kTables), std::end(kTables));
    for (const std::string& line : marlfuzz::splitOn(input, '\n')) {
        const std::vector<std::string> fields = marlfuzz::splitOn(line, '|');
        if (!known.count(fields[0]))
            continue;
        Row row;
        for (size_t i = 1; i < fields.size() && row.cells.size() < 64; ++i) {
            const auto equals = fields[i].find('=');
            if (equals == std::string::npos || equals == 0)
                continue;
            row.cells.emplace_back(fields[i].substr(0, equals), fields[i].substr(equals + 1));
        }
        tables[fields[0]].push_back(row);
    }

    sqlite3* db = nullptr;
    if (sqlite3_open(vapp::datastorePath().c_str(), &db) != SQLITE_OK) {
        sqlite3_close(db);
        std::abort();
    }
    exec(db, "BEGIN");
    for (const char* table : kTables)
        exec(db, "DROP TABLE IF EXISTS " + vapp::quoteSqlIdentifier(table));
    for (const auto& table : tables) {
        std::vector<std::string> columns;
        for (const Row& row : table.second)
            for (const auto& cell : row.cells)
                if (std::find(columns.begin(), columns.end(), cell.first) == columns.end())
                    columns.push_back(cell.first);
        // A table needs a column; one that no row fills is never delivered.
        if (columns.empty())
            columns.push_back("unused");
        std::string create;
        for (const auto& column : columns)
            create += (create.empty() ? "" : ", ") + vapp::quoteSqlIdentifier(column);
        exec(db, "CREATE TABLE " + vapp::quoteSqlIdentifier(table.first) + " (" + create + ")");
        for (const Row& row : table.second) {
            std::string names;
            std::string marks;
            for (const auto& cell : row.cells) {
                names += (names.empty() ? "" : ", ") + vapp::quoteSqlIdentifier(cell.first);
                marks += marks.empty() ? "?" : ", ?";
            }
            if (row.cells.empty()) {
                names = vapp::quoteSqlIdentifier(columns[0]);
                marks = "NULL";
            }
            const std::string insert =
                "INSERT INTO " + vapp::quoteSqlIdentifier(table.first) + " (" + names + ") VALUES (" + marks + ")";
            sqlite3_stmt* statement = nullptr;
            if (sqlite3_prepare_v2(db, insert.c_str(), -1, &statement, nullptr) == SQLITE_OK) {
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
            sqlite3_finalize(statement);
        }
    }
    exec(db, "COMMIT");
    sqlite3_close(db);
}

void readEverything()
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

    DaDeviceMorningBriefDataRetrieverImpl().appRunning();
    DaDeviceShoppingListDataRetrieverImpl().currentShoppingListSize();
    DaDeviceStatusDataRetrieverImpl().useCustomizedNluParams();

    std::map<std::string, JsonObject*> params;
    DaCustomizedNluParamsRetriever().getNluParams(&params);
    for (const auto& group : params)
        if (group.second)
            json_object_unref(group.second);
    if (JsonObject* mode = DaCustomizedRecognitionModeRetriever().getRecognitionMode())
        json_object_unref(mode);

    DaCustomizedDriverResponseRetriever retriever;
    for (const std::string& request : gRequests)
        retriever.getDriverResponse(request);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    marlfuzz::loadEngineOnTheFuzzDevice();
    for (const auto& entry : std::filesystem::directory_iterator(MARL_FUZZ_REQUESTS)) {
        std::ifstream file(entry.path());
        std::stringstream request;
        request << file.rdbuf();
        gRequests.push_back(request.str());
    }
    marlfuzz::runEmptyInput(LLVMFuzzerTestOneInput);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    writeStore(std::string(reinterpret_cast<const char*>(data), size));
    readEverything();
    return 0;
}
