#include "tests/support/network_share.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/support/file_checks.h"

namespace {

// A port on 127.0.0.1 that is free now.
int freePort() {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    ::bind(s, reinterpret_cast<sockaddr*>(&address), sizeof address);
    ::getsockname(s, reinterpret_cast<sockaddr*>(&address), &length);
    ::close(s);
    return ntohs(address.sin_port);
}

const std::string kScript = std::string(KZ_SOURCE_DIR) + "/tests/support/network_share.sh";

} // namespace

NetworkShare::NetworkShare(const std::string& kind) {
    const int status = std::system((kScript + " start " + kind + " " + dir_.path() + " " + std::to_string(freePort()) +
                                    " >" + dir_.file("mounted") + " 2>" + dir_.file("why"))
                                       .c_str());
    const std::string out = readFile(dir_.file("mounted"));
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0 && out.size() > 1) mounted_ = out.substr(0, out.size() - 1);
    skipReason_ = readFile(dir_.file("why"));
    if (!up() && !(WIFEXITED(status) && WEXITSTATUS(status) == 77))
        ADD_FAILURE() << "the " << kind << " share did not come up: " << skipReason_;
}

NetworkShare::~NetworkShare() { std::system((kScript + " stop " + dir_.path()).c_str()); }
