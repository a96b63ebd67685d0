// The parser library's records that the device fills.
#include <orvane-parser/MusicData.h>
#include <orvane-parser/TimerData.h>

TimerData::TimerData() : mId(), mIsRunning(), mTimerTime() {}

void TimerData::setId(std::string id) { mId = id; }
void TimerData::setIsRunning(std::string isRunning) { mIsRunning = isRunning; }
void TimerData::setTimerTime(std::string timerTime) { mTimerTime = timerTime; }
std::string TimerData::getId() { return mId; }
std::string TimerData::getIsRunning() { return mIsRunning; }
std::string TimerData::getTimerTime() { return mTimerTime; }

MusicData::MusicData() : mCurrentStation(), mLastStation(), mMusicAppName() {}

void MusicData::setCurrentStation(std::string currentStation) { mCurrentStation = currentStation; }
void MusicData::setLastStation(std::string lastStation) { mLastStation = lastStation; }
void MusicData::setMusicAppName(std::string musicAppName) { mMusicAppName = musicAppName; }
std::string MusicData::getCurrentStation() { return mCurrentStation; }
std::string MusicData::getLastStation() { return mLastStation; }
std::string MusicData::getMusicAppName() { return mMusicAppName; }
