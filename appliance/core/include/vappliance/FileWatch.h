// Tells whether a file changed since it was last read, so that a parsed copy
// of it is kept until another process writes it.
//
// A stat is compared first: device, inode, size, and the modification and
// change times to the nanosecond. A file system's clock advances in ticks, so
// two writes within one tick may leave every one of these alone (a rewrite in
// place of the same length, or a rename that reuses an inode number). A read
// made within kRacyWindowNs of the file's last write is therefore not trusted
// by its stamp alone: until a read finds the file older than that, every poll
// reads the content again and compares it.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace vapp {

class FileWatch {
public:
    enum Result {
        Unchanged,  // as last read; the caller's parsed copy is current
        Changed,    // read: text() is the new content
        Missing,    // no such file, or unreadable
    };

    static const int64_t kRacyWindowNs = 100 * 1000 * 1000;

    Result poll(const std::string& path);
    // The content of the last successful read.
    const std::string& text() const { return mText; }
    // Forgets the file: the next poll reads it.
    void forget();

private:
    struct Stamp {
        dev_t dev = 0;
        ino_t ino = 0;
        off_t size = -1;
        int64_t mtimeNs = 0;
        int64_t ctimeNs = 0;
        bool operator==(const Stamp& other) const;
    };

    bool mKnown = false;
    bool mRacy = false;
    std::string mPath;
    Stamp mStamp;
    std::string mText;
};

}  // namespace vapp
