#include "tests/support/network_share.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include <gtest/gtest.h>

namespace {

// A port on 127.0.0.1 that is free now.
int freePort() {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    int port = -1;
    if (::bind(s, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::getsockname(s, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    ::close(s);
    return port;
}

// Runs a shell command; its standard output in `out`, its standard error in `err`.
int run(const std::string& command, std::string& out, std::string& err, const std::string& errFile) {
    FILE* pipe = ::popen((command + " 2>" + errFile).c_str(), "r");
    if (!pipe) return -1;
    char buffer[4096];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) out.append(buffer, n);
    const int status = ::pclose(pipe);
    if (FILE* f = std::fopen(errFile.c_str(), "r")) {
        while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) err.append(buffer, n);
        std::fclose(f);
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

const std::string kScript = std::string(KZ_SOURCE_DIR) + "/tests/support/network_share.sh";

} // namespace

NetworkShare::NetworkShare(const std::string& kind) {
    std::string out, err;
    const int status = run(kScript + " start " + kind + " " + dir_.path() + " " + std::to_string(freePort()), out,
                           err, dir_.file("start.err"));
    while (!out.empty() && out.back() == '\n') out.pop_back();
    if (status == 0 && !out.empty()) mounted_ = out;
    else if (status == 77) skipReason_ = err;
    else ADD_FAILURE() << "the " << kind << " share did not come up (status " << status << "): " << err;
    if (skipReason_.empty() && !up()) skipReason_ = "the " + kind + " share did not come up";
}

NetworkShare::~NetworkShare() {
    std::string out, err;
    run(kScript + " stop " + dir_.path(), out, err, "/dev/null");
}
