#include "cli/commandrunner.h"

#include "support/temporaryfolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void redirect(int descriptor, const std::string& file)
{
    const int target = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(target, descriptor);
    close(target);
}

[[noreturn]] void become(const Words& arguments, const Environment& environment, long fileLimit)
{
    unsetenv("DISPLAY");
    for (const auto& [name, value] : environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<char*> words = {const_cast<char*>(CRENARA_PROGRAM)};
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    if (fileLimit > 0) {
        const rlimit limit{static_cast<rlim_t>(fileLimit), static_cast<rlim_t>(fileLimit)};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    execv(CRENARA_PROGRAM, words.data());
    _exit(126);
}

} // namespace

CommandResult crenara(const Words& arguments, const Environment& environment, long fileLimit)
{
    const TemporaryFolder streams;
    const pid_t child = fork();
    if (child == 0) {
        redirect(STDOUT_FILENO, streams.file("out"));
        redirect(STDERR_FILENO, streams.file("err"));
        become(arguments, environment, fileLimit);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), streams.read("out"),
            streams.read("err")};
}

CommandResult runs(const Words& arguments, const Environment& environment)
{
    CommandResult result = crenara(arguments, environment);
    EXPECT_EQ(result.status, 0) << testing::PrintToString(arguments) << "\n" << result.err;
    return result;
}

CommandResult fails(const Words& arguments, const std::string& text, int status, long fileLimit)
{
    CommandResult result = crenara(arguments, {}, fileLimit);
    EXPECT_EQ(result.status, status) << testing::PrintToString(arguments);
    EXPECT_TRUE(result.says(text)) << text << "\n" << result.err;
    return result;
}
