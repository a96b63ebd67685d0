#ifndef ORVANE_PARSER_MUSIC_DATA_H
#define ORVANE_PARSER_MUSIC_DATA_H

#include <string>

// The music player's state as the parser asks for it. The parser library
// implements every member function.
class MusicData {
public:
    MusicData();

    void setCurrentStation(std::string currentStation);
    void setLastStation(std::string lastStation);
    void setMusicAppName(std::string musicAppName);

    std::string getCurrentStation();
    std::string getLastStation();
    std::string getMusicAppName();

private:
    std::string mCurrentStation;
    std::string mLastStation;
    std::string mMusicAppName;
};

#endif
