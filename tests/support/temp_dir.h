// A real folder in the system's temporary directory (or in `base`), removed with everything
// in it when the object goes.
#pragma once

#include <string>

class TempDir {
public:
    explicit TempDir(const char* base = nullptr);
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    // The folder, without a trailing "/".
    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

// Writes `content` to `path`, replacing what was there.
void writeFile(const std::string& path, const std::string& content);
