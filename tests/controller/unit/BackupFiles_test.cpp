// SPDX-License-Identifier: Apache-2.0
#include "controller/RunCleaning.h"
#include "tests/controller/unit/RunFixture.h"
#include "tests/support/Surroundings.h"

using namespace Testing;

namespace {

class BackupFiles : public RunFixture {
protected:
    void remove_backups(unsigned keep = 0) const
    {
        RemoveBackupFiles(Tavro::FilePath(at("cards/case.SlvrMain")), keep);
    }
};

} // namespace

TEST_F(BackupFiles, WithoutABackupDirectoryNothingHappens)
{
    make_tree(m_root.path(), { "cards/case.SlvrMain", "case.sav1" });
    remove_backups();
    EXPECT_EQ(tree_of(m_root.path()), "cards/ cards/case.SlvrMain case.sav1");
}

TEST_F(BackupFiles, BackupsStayWhereTheWorkingDirectoryIsAnother)
{
    make_tree(m_root.path(), { "cards/backup/case.sav", "cards/backup/case.sav7" });
    remove_backups();
    EXPECT_EQ(tree_of(m_root.path()),
        "cards/ cards/backup/ cards/backup/case.sav cards/backup/case.sav7");
}

TEST_F(BackupFiles, NamesakesInTheWorkingDirectoryGoInTheirPlace)
{
    make_tree(m_root.path(), { "cards/backup/case.sav7", "case.sav7", "case.sav8" });
    remove_backups();
    EXPECT_EQ(tree_of(m_root.path()), "cards/ cards/backup/ cards/backup/case.sav7 case.sav8");
}

TEST_F(BackupFiles, NamesakeThatIsADirectoryGoesWithAllInIt)
{
    make_tree(m_root.path(), { "cards/backup/case.sav7", "case.sav7/precious" });
    remove_backups();
    EXPECT_EQ(tree_of(m_root.path()), "cards/ cards/backup/ cards/backup/case.sav7");
}

TEST_F(BackupFiles, BackupsGoWhereTheWorkingDirectoryIsTheirs)
{
    make_tree(m_root.path(),
        { "cards/backup/case.sav", "cards/backup/case.sav7", "cards/backup/case.sava/x",
            "cards/backup/cas.sav", "cards/backup/case.SlvrMain.sav" });
    const WorkingDirectoryScope inBackup(at("cards/backup"));
    remove_backups();
    EXPECT_EQ(tree_of(m_root.path()),
        "cards/ cards/backup/ cards/backup/cas.sav cards/backup/case.SlvrMain.sav");
}

TEST_F(BackupFiles, DirectoryThatHasBecomeEmptyGoes)
{
    if (!directories_are_like_files())
        GTEST_SKIP() << "a working directory stays here";
    make_tree(m_root.path(), { "cards/backup/case.sav7", "cards/case.SlvrMain" });
    const WorkingDirectoryScope inBackup(at("cards/backup"));
    remove_backups();
    EXPECT_EQ(tree_of(m_root.path()), "cards/ cards/case.SlvrMain");
}

TEST_F(BackupFiles, DirectoryThatWasEmptyGoes)
{
    make_tree(m_root.path(), { "cards/backup/" });
    remove_backups();
    EXPECT_EQ(tree_of(m_root.path()), "cards/");
}

TEST_F(BackupFiles, DirectoryWithAHiddenFileStays)
{
    make_tree(m_root.path(), { "cards/backup/.keep" });
    remove_backups();
    EXPECT_EQ(tree_of(m_root.path()), "cards/ cards/backup/ cards/backup/.keep");
}

TEST_F(BackupFiles, EmptyDirectoryStaysIfSomeAreToBeKept)
{
    make_tree(m_root.path(), { "cards/backup/case.sav7" });
    const WorkingDirectoryScope inBackup(at("cards/backup"));
    remove_backups(1);
    EXPECT_EQ(tree_of(m_root.path()), "cards/ cards/backup/") << "the count keeps no file";
}

TEST_F(BackupFiles, OnlyTheLastExtensionIsNoPartOfTheName)
{
    make_tree(m_root.path(),
        { "cards/backup/case.sav1", "cards/backup/case.b.sav1", "case.sav1", "case.b.sav1" });
    RemoveBackupFiles(Tavro::FilePath(at("cards/case.b.SlvrRot")), 0);
    EXPECT_EQ(tree_of(m_root.path()),
        "cards/ cards/backup/ cards/backup/case.b.sav1 cards/backup/case.sav1 case.sav1");
}
