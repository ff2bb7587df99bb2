// How the tool's steps report trouble: a status and a one-line message,
// handed back to the caller, who decides what to print and how to exit.
#pragma once
#include <string>

namespace tools {

// Exit statuses: 2 when the command line or what it names cannot work (a
// usage error, found before any frame is written), 1 when the work itself
// fails.
enum ExitStatus { kExitOk = 0, kExitFailure = 1, kExitUsage = 2 };

struct Status {
    int code = kExitOk;
    std::string message;
    bool ok() const { return code == kExitOk; }
};

inline Status ok_status() { return {}; }
inline Status usage_error(std::string message) { return {kExitUsage, std::move(message)}; }
inline Status failure(std::string message) { return {kExitFailure, std::move(message)}; }

}  // namespace tools
