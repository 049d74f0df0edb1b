// Replacing files: what stands after each way in which it may fail.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include "dxf/save_file.h"
#include "dxf/temporary_file.h"
#include "temp_folder.h"

namespace {

using namespace host::dxf;

class SaveFile : public testing::Test {
  protected:
    ~SaveFile() override { fileCalls() = FileCalls(); }

    /// Saves the text. @return the error behind the path; empty for success
    std::string save(const std::string& name, std::string_view text = "new",
                     const ReplaceOptions& options = {}) {
        std::string error;
        const std::string path = name.starts_with('/') ? name : folder.file(name);
        if (replaceFile(path, {text}, options, written, error)) return "";
        return error.substr(path.size());
    }
    std::string contents(const std::string& name) const {
        return TempFolder::read(folder.file(name));
    }
    mode_t modeOf(const std::string& name) const {
        struct stat status {};
        stat(folder.file(name).c_str(), &status);
        return status.st_mode & 0777U;
    }

    TempFolder folder;
    host::FileStamp written;
};

TEST_F(SaveFile, what_keeps_a_file_from_being_written_is_said) {
    mkdir(folder.file("sub").c_str(), 0755);
    mkfifo(folder.file("pipe").c_str(), 0644);
    folder.write("file", "old");
    folder.write("guarded", "old");
    chmod(folder.file("guarded").c_str(), 0444);
    ASSERT_EQ(symlink("ring", folder.file("ring").c_str()), 0);
    const struct {
        std::string name;
        std::string error;
    } kCases[] = {
        {"sub", ": a folder, no drawing can be saved there"},
        {"sub/", ": a folder, no drawing can be saved there"},
        {".", ": a folder, no drawing can be saved there"},
        {"pipe", ": no regular file, no drawing can be saved there"},
        {"guarded", ": the file is write-protected"},
        {"no/out", ": there is no folder " + folder.file("no")},
        {"file/out", ": " + folder.file("file") + " is no folder"},
        {std::string(256, 'x'), ": the file's name or path is too long"},
        {"ring", ": links that lead in a circle"},
    };
    const size_t before = folder.count();
    for (const auto& [name, error] : kCases)
        EXPECT_EQ(save(name), error) << name;
    EXPECT_EQ(contents("guarded"), "old");
    EXPECT_EQ(folder.count(), before);
    ReplaceOptions force;
    force.force = true;
    EXPECT_EQ(save("guarded", "new", force), "");
    EXPECT_EQ(contents("guarded"), "new");
    EXPECT_EQ(modeOf("guarded"), 0444U);
    const std::string longest(255, 'y');
    EXPECT_EQ(save(longest), "");
    EXPECT_EQ(contents(longest), "new");
}

TEST_F(SaveFile, calls_that_fail_leave_the_old_file_and_nothing_else) {
    folder.write("plan.dxf", "old");
    static int cause = 0;
    const auto fail = [](int wanted) {
        cause = wanted;
        FileCalls calls;
        calls.unnamed = fileCalls().unnamed;
        fileCalls() = calls;
        return &fileCalls();
    };
    ReplaceOptions backup;
    backup.backup = true;
    for (const bool unnamed : {true, false}) {
        fileCalls().unnamed = unnamed;
        fail(ENOSPC)->write = [](int, const iovec*, int) -> ssize_t {
            errno = cause;
            return -1;
        };
        EXPECT_EQ(save("plan.dxf"), ": the disk is full");
        fail(EIO)->sync = [](int) { return errno = cause, -1; };
        EXPECT_EQ(save("plan.dxf"), ": the disk reports an error");
        fail(EDQUOT)->rename = [](int, const char*, int, const char*) { return errno = cause, -1; };
        EXPECT_EQ(save("plan.dxf"), ": the disk quota is used up");
        EXPECT_EQ(save("plan.dxf", "new", backup),
                  ": the backup plan.bak can't be made, the disk quota is used up");
        EXPECT_EQ(contents("plan.dxf"), "old");
        EXPECT_EQ(folder.count(), 1U);
    }
    // Writing in small steps and after interruptions.
    fail(0)->write = [](int file, const iovec* parts, int) -> ssize_t {
        static int call = 0;
        if (++call % 2 == 0) {
            errno = EINTR;
            return -1;
        }
        return ::write(file, parts->iov_base, std::min<size_t>(parts->iov_len, 2));
    };
    EXPECT_EQ(save("plan.dxf", "in small steps"), "");
    EXPECT_EQ(contents("plan.dxf"), "in small steps");
}

TEST_F(SaveFile, a_file_in_another_state_is_kept) {
    ASSERT_EQ(save("plan.dxf", "first"), "");
    ReplaceOptions options;
    options.expected = written;
    EXPECT_EQ(save("plan.dxf", "second", options), "");
    options.expected = written;
    folder.write("plan.dxf", "theirs!");
    EXPECT_EQ(save("plan.dxf", "mine", options).find(": changed on disk since it was opened"), 0U);
    EXPECT_EQ(contents("plan.dxf"), "theirs!");
    options.force = true;
    EXPECT_EQ(save("plan.dxf", "mine", options), "");
    EXPECT_EQ(contents("plan.dxf"), "mine");
    // One that is gone is written again.
    options.force = false;
    unlink(folder.file("plan.dxf").c_str());
    EXPECT_EQ(save("plan.dxf", "again", options), "");
}

TEST_F(SaveFile, the_backup_is_the_old_file_also_where_there_are_no_second_names) {
    ReplaceOptions options;
    options.backup = true;
    EXPECT_EQ(save("plan.dxf", "1", options), "");
    EXPECT_EQ(folder.count(), 1U);
    chmod(folder.file("plan.dxf").c_str(), 0640);
    EXPECT_EQ(save("plan.dxf", "2", options), "");
    EXPECT_EQ(contents("plan.bak"), "1");
    fileCalls().unnamed = false;
    fileCalls().link = [](int, const char*, int, const char*, int) { return errno = EPERM, -1; };
    EXPECT_EQ(save("plan.dxf", "3", options), "");
    EXPECT_EQ(contents("plan.bak"), "2");
    EXPECT_EQ(contents("plan.dxf"), "3");
    EXPECT_EQ(modeOf("plan.bak"), 0640U);
    EXPECT_EQ(modeOf("plan.dxf"), 0640U);
    EXPECT_EQ(folder.count(), 2U);
    unlink(folder.file("plan.bak").c_str());
    mkdir(folder.file("plan.bak").c_str(), 0755);
    EXPECT_EQ(save("plan.dxf", "4", options),
              ": the backup plan.bak can't be made, a folder has that name");
    EXPECT_EQ(contents("plan.dxf"), "3");
    EXPECT_EQ(backupPath("a.b/plan"), "a.b/plan.bak");
    EXPECT_EQ(backupPath("plan.bak"), "plan.bak.bak");
}

TEST_F(SaveFile, links_lead_to_the_file_that_is_written) {
    mkdir(folder.file("sub").c_str(), 0755);
    folder.write("sub/real.dxf", "old");
    ASSERT_EQ(symlink("sub/real.dxf", folder.file("link.dxf").c_str()), 0);
    ASSERT_EQ(symlink("sub/made.dxf", folder.file("waiting.dxf").c_str()), 0);
    EXPECT_EQ(save("link.dxf"), "");
    EXPECT_EQ(save("waiting.dxf"), "");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link.dxf")));
    EXPECT_EQ(contents("sub/real.dxf"), "new");
    EXPECT_EQ(contents("sub/made.dxf"), "new");
    if (geteuid() == 0) {  // only the superuser may give files away
        ASSERT_EQ(chown(folder.file("sub/real.dxf").c_str(), 12, 34), 0);
        EXPECT_EQ(save("link.dxf", "newer"), "");
        struct stat status {};
        stat(folder.file("sub/real.dxf").c_str(), &status);
        EXPECT_EQ(status.st_uid, 12U);
        EXPECT_EQ(status.st_gid, 34U);
    }
}

/// Names in the folder of the test that a killed run would leave.
TEST_F(SaveFile, files_of_dead_runs_go_and_those_of_living_ones_and_others_stay) {
    folder.write(".plan.dxf.kz-save-Ab3dE9", "dead");
    const std::string living = folder.write(".plan.dxf.kz-save-000000", "living");
    folder.write(".plan.dxf.kz-save-Ab3dE", "another's");
    folder.write("plan.dxf.kz-save-Ab3dE9", "another's");
    mkdir(folder.file(".x.kz-save-Ab3dE9").c_str(), 0755);
    const int held = open(living.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    EXPECT_EQ(save("plan.dxf"), "");
    EXPECT_EQ(folder.count(), 5U);
    EXPECT_FALSE(std::filesystem::exists(folder.file(".plan.dxf.kz-save-Ab3dE9")));
    close(held);
    EXPECT_EQ(save("plan.dxf"), "");
    EXPECT_FALSE(std::filesystem::exists(living));
}

TEST_F(SaveFile, a_run_that_is_ended_in_the_midst_leaves_the_old_file_or_the_new_one) {
    const std::string first(300000, 'a');
    const std::string second(300000, 'b');
    folder.write("plan.dxf", first);
    for (const int signal : {SIGKILL, SIGTERM, SIGINT}) {
        for (int round = 0; round < 30; ++round) {
            const pid_t child = fork();
            if (child == 0) {
                fileCalls().unnamed = round % 2 == 0;
                for (;;)
                    save("plan.dxf", round % 3 == 0 ? first : second);
            }
            usleep(static_cast<useconds_t>(1000 + round * 211));
            kill(child, signal);
            waitpid(child, nullptr, 0);
            const std::string found = contents("plan.dxf");
            EXPECT_TRUE(found == first || found == second);
            EXPECT_LE(folder.count(), signal == SIGKILL ? 2U : 1U);
            EXPECT_EQ(save("plan.dxf", first), "");
            EXPECT_EQ(folder.count(), 1U);
        }
    }
}

}  // namespace
