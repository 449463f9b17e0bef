// Every command with every stream in every state that a stream can be in: it ends by itself, says what it can say, and
// what is written to a file is there, all of it or nothing.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "io/error.h"
#include "io/output.h"
#include "tool/program.h"

namespace {

using program::File;
using program::Outcome;
using program::run;
using program::Stream;

using Words = std::vector<std::string>;

constexpr Stream all_streams[] = {Stream::file, Stream::terminal, Stream::full, Stream::broken, Stream::closed};

// A folder of its own, which goes away with the object.
class Folder {
public:
    Folder() : path_{testing::TempDir() + "npxlate_folder_XXXXXX"} {
        if (::mkdtemp(path_.data()) == nullptr) {
            throw std::runtime_error{"no temporary folder"};
        }
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string file(const std::string& name) const { return path_ + "/" + name; }
    std::size_t files() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator{path_}, {}));
    }

private:
    std::string path_;
};

std::string content(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream{path, std::ios::binary}.rdbuf();
    return text.str();
}

void write(const std::string& path, const std::string& text) { std::ofstream{path, std::ios::binary} << text; }

std::size_t lines(const std::string& text) { return static_cast<std::size_t>(std::ranges::count(text, '\n')); }

const std::string good_line = "{\"table\":17,\"result\":\"0000000001020304\"}\n";
const std::string translated_line = "{\"table\":17,\"physical_result\":\"1100010001020304\"}\n";

// A command and its status where nothing is wrong with a stream.
struct Command {
    Words arguments;
    int status;
};

std::vector<Command> commands() {
    const std::string key = "0102030405060708";
    return {
        {{"--help"}, 0},
        {{"--version"}, 0},
        {{}, 2},
        {{"nonsense"}, 2},
        {{"tables"}, 0},
        {{"tables", "--json"}, 0},
        {{"registers", "parse"}, 0},
        {{"registers", "nonsense"}, 2},
        {{"key", "17", key}, 0},
        {{"key", "17", "zz"}, 2},
        {{"result", "12", "01 10 05", std::string(66, '0')}, 1},
        {{"result", "12", "00 00 05", std::string(66, '0')}, 0},  // with a note
        {{"reverse", "17", "--json", key}, 0},
        {{"explain", "17", "--role", "key", key}, 0},
        {{"explain", "17", "--role", "key", "zz"}, 2},
        {{"roundtrip", "121", "010203"}, 0},
        {{"roundtrip", "121", "zz"}, 2},
        {{"diff", "17", "--role", "key", key, "zz"}, 2},
        {{"diff", "17", "--role", "key", key, key}, 0},
        {{"layout", "17"}, 0},
        {{"layout", "nonsense"}, 2},
        {{"atlas", "-"}, 0},
        {{"batch"}, 1},
        {{"batch", "--raw", "key:121"}, 1},
    };
}

// One bad line; as raw records of four bytes, one that is not whole.
const std::string batch_input = good_line + "nonsense\n" + good_line + good_line + ".";

TEST(Streams, NeverEndACommandBySignal) {
    for (const Command& command : commands()) {
        for (const Stream out : all_streams) {
            for (const Stream err : all_streams) {
                if (command.arguments == Words{"atlas", "-"} && err != Stream::broken) {
                    continue;  // it takes its time
                }
                const Outcome outcome = run(command.arguments, {.input = batch_input, .out = out, .err = err});
                const std::string name = testing::PrintToString(command.arguments) + " with output " +
                                         std::to_string(static_cast<int>(out)) + " and errors " +
                                         std::to_string(static_cast<int>(err));
                EXPECT_LE(outcome.status, 2) << name;
                const bool written = out == Stream::file || out == Stream::terminal;
                const bool binary = std::ranges::count(command.arguments, "--raw") > 0;
                if (written && !(out == Stream::terminal && binary)) {
                    EXPECT_EQ(outcome.status, command.status) << name;
                }
                const bool compares = !command.arguments.empty() && command.arguments.front() == "diff";
                if (!written && command.status == 0) {
                    EXPECT_EQ(outcome.status, compares ? 2 : 1) << name;
                }
                if (err == Stream::file && out == Stream::full && command.status == 0) {
                    EXPECT_EQ(lines(outcome.err), 1U) << name << outcome.err;
                    EXPECT_NE(outcome.err.find("cannot write standard output: No space left on device"),
                              std::string::npos)
                        << name << outcome.err;
                }
            }
        }
    }
}

TEST(Streams, ThatNobodyReadsEndACommandQuietly) {
    for (const Words& arguments : {Words{"tables"}, Words{"--help"}, Words{"atlas", "-"}, Words{"layout", "17"}}) {
        const Outcome outcome = run(arguments, {.out = Stream::broken});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, "");
    }
}

TEST(Streams, ThatAreClosedAreNoFiles) {
    // A file that is opened by the number of standard error would get its messages.
    const Folder folder;
    write(folder.file("in"), batch_input);
    const std::string out = folder.file("out");
    const Outcome outcome = run({"batch", folder.file("in"), "-o", out},
                                {.in_is_closed = true, .out = Stream::closed, .err = Stream::closed});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(content(out), translated_line + translated_line + translated_line);
    const Outcome no_input = run({"batch"}, {.in_is_closed = true});
    EXPECT_EQ(no_input.err, "npxlate: error: cannot read standard input: Bad file descriptor\n");
    EXPECT_EQ(no_input.status, 2);
    const Outcome no_record = run({"key", "17"}, {.in_is_closed = true});
    EXPECT_EQ(no_record.err, "npxlate: error: cannot read standard input: Bad file descriptor\n");
    EXPECT_EQ(no_record.status, 2);
}

// ---- Files ----

TEST(Files, HoldEveryGoodRecordWhateverHappensToStandardError) {
    const std::string translated = translated_line + translated_line + translated_line;
    for (const Stream err : all_streams) {
        const Folder folder;
        const std::string out = folder.file("out");
        const Outcome outcome = run({"batch", "-o", out}, {.input = batch_input, .err = err});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(content(out), translated);
        EXPECT_EQ(folder.files(), 1U);
    }
}

// Whatever goes wrong while a file is written, the one that was there stays, and nothing else appears.
TEST(Files, AreReplacedWholeOrNotAtAll) {
    std::string many;
    for (int i = 0; i < 100000; ++i) {
        many += good_line;
    }
    const Folder folder;
    const std::string out = folder.file("out");
    write(out, "what was there");
    const File in{many};

    // A file that may not grow, as on a full disk.
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{100000, limit.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const Outcome full = run({"batch", in.path(), "-o", out});
    const Outcome atlas = run({"atlas", out});
    ::setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, "npxlate: error: cannot write " + out + ": File too large\n");
    EXPECT_EQ(atlas.status, 1);
    EXPECT_EQ(content(out), "what was there");
    EXPECT_EQ(folder.files(), 1U);

    // A kill, of a batch that waits for more.
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(ends[0], STDIN_FILENO);
        ::close(ends[1]);
        ::execl(NPXLATE_TOOL_PATH, NPXLATE_TOOL_PATH, "batch", "-o", out.c_str(), nullptr);
        ::_exit(127);
    }
    ASSERT_EQ(::write(ends[1], many.data(), many.size()), static_cast<ssize_t>(many.size()));
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    ::close(ends[0]);
    ::close(ends[1]);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(content(out), "what was there");
    EXPECT_EQ(folder.files(), 1U);

    const Outcome done = run({"batch", in.path(), "-o", out});
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(lines(content(out)), 100000U);
    EXPECT_EQ(folder.files(), 1U);
}

TEST(Files, KeepTheirRightsAndTheirLinks) {
    const Folder folder;
    const std::string out = folder.file("out");
    write(out, "old");
    ::chmod(out.c_str(), 0640);
    const std::string link = folder.file("link");
    ASSERT_EQ(::symlink("out", link.c_str()), 0);
    EXPECT_EQ(run({"batch", "-o", link}, {.input = good_line}).status, 0);
    EXPECT_EQ(content(out), translated_line);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    struct stat status {};
    ASSERT_EQ(::stat(out.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);

    // One that leads to no file yet.
    const std::string other = folder.file("other");
    ASSERT_EQ(::symlink(folder.file("new").c_str(), other.c_str()), 0);
    EXPECT_EQ(run({"batch", "-o", other}, {.input = good_line}).status, 0);
    EXPECT_EQ(content(folder.file("new")), translated_line);
    ASSERT_EQ(::stat(other.c_str(), &status), 0);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    EXPECT_EQ(status.st_mode & 0777U, 0666U & ~mask);
}

TEST(Files, WhoseFileSystemHasNoNamelessOnesAreWholeToo) {
    const Folder folder;
    const std::string path = folder.file("out");
    write(path, "old");
    {
        io::Output output{path, io::Output::Holding::named};
        output.write("half of it");
        EXPECT_EQ(folder.files(), 2U);
    }
    EXPECT_EQ(content(path), "old");
    EXPECT_EQ(folder.files(), 1U);
    io::Output output{path, io::Output::Holding::named};
    output.write("all of it");
    output.close();
    EXPECT_EQ(content(path), "all of it");
    EXPECT_EQ(folder.files(), 1U);
}

TEST(Files, ThatAreNoneAreWrittenAsTheyAre) {
    const Outcome device = run({"batch", "-o", "/dev/stdout"}, {.input = good_line});
    EXPECT_EQ(device.out, translated_line);
    EXPECT_EQ(device.err, "");
    const Outcome full = run({"batch", "-o", "/dev/full"}, {.input = good_line});
    EXPECT_EQ(full.err, "npxlate: error: cannot write /dev/full: No space left on device\n");
    EXPECT_EQ(full.status, 1);
    const Outcome null = run({"atlas", "/dev/null"});
    EXPECT_EQ(null.status, 0);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(Files, ThatCannotBeOpenedAreToldSo) {
    for (const auto& [path, reason] : {std::pair{"/nonexistent/file", "No such file or directory"},
                                       {"/", "Is a directory"},
                                       {"new/", "Is a directory"}}) {
        for (const Words& arguments : {Words{"batch", "-o", path}, Words{"atlas", path}}) {
            const Outcome outcome = run(arguments, {.input = good_line, .folder = testing::TempDir()});
            EXPECT_EQ(outcome.err, std::string{"npxlate: error: cannot write "} + path + ": " + reason + "\n");
            EXPECT_EQ(outcome.status, 1);
        }
    }
    const Outcome nameless = run({"atlas", ""});
    EXPECT_EQ(nameless.err, "npxlate: error: cannot write \"\": No such file or directory\n");
    EXPECT_EQ(nameless.status, 1);
}

}  // namespace
