// Opening configuration files that are not regular files, or that cannot be read.
#include "config/import_file.h"

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>

#include "config/import.h"
#include "tests/child_process.h"
#include "tests/mock_adapter.h"
#include "tests/temp_dir_fixture.h"

namespace {
class ImportFromFile : public TempDirFixture {
protected:
    // The import fails before any call of the adapter, with all options.
    void expectRejected(const std::string& name) {
        const std::string message = "Unable to open the specified configuration file \"" + name + "\"!!\n";
        for (const char* option : {"-a", "-c", "-i"}) {
            const CommandOutcome outcome = run(ImportFile, {"import", option, "-f", name});
            EXPECT_EQ(outcome.result, 12) << name << option;
            EXPECT_EQ(outcome.output, message) << name << option;
        }
    }
    // Reads a pipe into which a child process writes the text the given number of times. Returns the content,
    // or "refused".
    std::string readThroughPipe(const std::string& text, std::size_t times) {
        EXPECT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
        const pid_t writer = fork();
        if (writer == 0) {
            std::FILE* pipe = std::fopen(path("pipe").c_str(), "w");
            for (std::size_t i = 0; i < times; ++i)
                std::fputs(text.c_str(), pipe);
            _exit(std::fclose(pipe));
        }
        std::string read = "refused";
        if (std::FILE* file = openConfigFile(path("pipe").c_str())) {
            read.clear();
            for (int c; (c = std::getc(file)) != EOF;)
                read += static_cast<char>(c);
            std::fclose(file);
        }
        kill(writer, SIGTERM); // in case it has not ended
        waitpid(writer, nullptr, 0);
        std::filesystem::remove(path("pipe"));
        return read;
    }
};
} // namespace

TEST_F(ImportFromFile, RejectsADirectory) {
    expectRejected(directory);
}

TEST_F(ImportFromFile, RejectsEndlessDevices) {
    expectRejected("/dev/zero");
    expectRejected("/dev/full");
}

TEST_F(ImportFromFile, RejectsAnUnreadableFile) {
    write("file", "[CrtlSetIndex] 0\n[End] \n");
    chmod(path("file").c_str(), 0);
    EXPECT_EQ(runAsNobody([&] { expectRejected(path("file")); }), 0);
}

TEST_F(ImportFromFile, ReadsAnEmptyDevice) {
    EXPECT_EQ(run(ImportFile, {"import", "-f", "/dev/null"}).result, 14);
}

TEST_F(ImportFromFile, ReadsAPipeOnce) {
    EXPECT_EQ(readThroughPipe("some text\n", 3), "some text\nsome text\nsome text\n");
    EXPECT_EQ(readThroughPipe("", 0), "");
}

TEST_F(ImportFromFile, ReadsSixteenMegabytesFromAPipeAndNoMore) {
    const std::string megabyte(1024 * 1024, 'x');
    EXPECT_EQ(readThroughPipe(megabyte, 16).size(), 16 * megabyte.size());
    EXPECT_EQ(readThroughPipe(megabyte, 17), "refused");
}

TEST_F(ImportFromFile, ReadsARegularFileOfAnySize) {
    write("file", std::string(17 * 1024 * 1024, 'x'));
    std::FILE* file = openConfigFile(path("file").c_str());
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(std::getc(file), 'x');
    std::fclose(file);
}
