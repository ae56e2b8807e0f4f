#include "platform/RunTool.h"

#include "platform/JsonCoding.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace dorvik::platform {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

struct Pipe {
    int readEnd = -1;
    int writeEnd = -1;
};

bool openPipe(Pipe& pipe) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return false;
    }
    pipe.readEnd = ends[0];
    pipe.writeEnd = ends[1];
    return true;
}

void closeEnd(int& end) {
    if (end >= 0) {
        close(end);
        end = -1;
    }
}

// Reads both pipes to their end at once, so that a tool writing much to one of them never
// waits on the other.
void drain(Pipe& out, Pipe& err, std::string& output, std::string& errorOutput) {
    std::array<char, 65536> buffer{};
    std::array<pollfd, 2> watched = {{{out.readEnd, POLLIN, 0}, {err.readEnd, POLLIN, 0}}};
    std::array<std::string*, 2> sinks = {&output, &errorOutput};
    int open = 2;
    while (open > 0) {
        if (poll(watched.data(), watched.size(), -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            break;
        }
        for (size_t which = 0; which < watched.size(); ++which) {
            if (watched[which].fd < 0 || watched[which].revents == 0) {
                continue;
            }
            const ssize_t count = read(watched[which].fd, buffer.data(), buffer.size());
            if (count > 0) {
                sinks[which]->append(buffer.data(), static_cast<size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                watched[which].fd = -1; // poll skips a negative descriptor
                --open;
            }
        }
    }
}

} // namespace

std::string toolMessage(const ToolRun& run, std::string_view fallback) {
    const std::string& text = run.errorOutput;
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) {
        return std::string(fallback);
    }
    const size_t last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

std::string repairedUtf8(const std::string& bytes) {
    std::string result;
    result.reserve(bytes.size());
    size_t index = 0;
    while (index < bytes.size()) {
        const size_t length =
            JsonCoding::validSequenceLength(std::string_view(bytes).substr(index));
        if (length == 0) {
            result += replacement;
            ++index;
        } else {
            result.append(bytes, index, length);
            index += length;
        }
    }
    return result;
}

ToolRun runProcess(const std::vector<std::string>& argv) {
    ToolRun run;
    if (argv.empty()) {
        return run;
    }
    Pipe out;
    Pipe err;
    if (!openPipe(out) || !openPipe(err)) {
        for (int* end : {&out.readEnd, &out.writeEnd, &err.readEnd, &err.writeEnd}) {
            closeEnd(*end);
        }
        return run;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out.writeEnd, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err.writeEnd, STDERR_FILENO);

    std::vector<char*> arguments;
    arguments.reserve(argv.size() + 1);
    for (const std::string& word : argv) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);

    pid_t child = 0;
    const int spawned =
        posix_spawn(&child, argv[0].c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    closeEnd(out.writeEnd);
    closeEnd(err.writeEnd);
    if (spawned == 0) {
        drain(out, err, run.output, run.errorOutput);
    }
    closeEnd(out.readEnd);
    closeEnd(err.readEnd);
    if (spawned != 0) {
        return run;
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return run;
        }
    }
    // glibc's posix_spawn reports a program that cannot be executed as its own failure, above.
    run.launched = true;
    run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.output = repairedUtf8(run.output);
    run.errorOutput = repairedUtf8(run.errorOutput);
    return run;
}

std::string runTool(const std::string& path, const std::vector<std::string>& arguments) {
    std::vector<std::string> argv;
    argv.reserve(arguments.size() + 1);
    argv.push_back(path);
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    const ToolRun run = runProcess(argv);
    return run.launched ? run.output : std::string();
}

bool isExecutable(const std::string& path) {
    return access(path.c_str(), X_OK) == 0;
}

} // namespace dorvik::platform
