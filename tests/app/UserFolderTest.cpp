// An installed program (bin/tessaly beside share/tessaly) with no journal
// beside it: each user's data folder is made and filled from the templates;
// a folder that cannot be made or a damaged template ends the program with a
// message naming the folder.
#include "support/Helpers.h"

namespace {

const QStringList kTemplates = {"user2.mdb", "GpSz", "GpSh"};

struct Installed {
    QTemporaryDir root;
    Installed()
    {
        QDir(root.path()).mkpath("bin");
        QDir(root.path()).mkpath("share/tessaly");
        QFile::copy(TESSALY_EXE, root.filePath("bin/tessaly"));
        for (const QString &name : kTemplates)
            QFile::copy(QStringLiteral(TESSALY_TEMPLATE_DIR) + u'/' + name, root.filePath("share/tessaly/" + name));
    }
    // The program of a user whose data home is `dataHome`.
    std::unique_ptr<QProcess> start(const QString &dataHome) const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("HOME", root.filePath("home"));
        env.insert("XDG_DATA_HOME", dataHome);
        env.insert("TESSALY_MESSAGES_TO_STDERR", "1");
        env.insert("TESSALY_REPORT_SHOWN", "1");
        auto p = std::make_unique<QProcess>();
        p->setProcessEnvironment(env);
        p->start(root.filePath("bin/tessaly"), {});
        return p;
    }
};

} // namespace

TEST(UserFolder, EachUserGetsHisOwnSeededJournalAndLock)
{
    Installed inst;
    const QString homes[] = {inst.root.filePath("alice"), inst.root.filePath("bob")};
    std::unique_ptr<QProcess> running[] = {inst.start(homes[0]), inst.start(homes[1])};
    for (int i = 0; i < 2; ++i) {
        QByteArray out;
        while (!out.contains("login-shown") && running[i]->waitForReadyRead(20000))
            out += running[i]->readAllStandardOutput();
        ASSERT_TRUE(out.contains("login-shown")) << running[i]->readAllStandardError().toStdString();
        for (const QString &name : kTemplates)
            EXPECT_EQ(fileBytes(homes[i] + "/Tessaly/" + name), fileBytes(inst.root.filePath("share/tessaly/" + name)));
        EXPECT_TRUE(QFileInfo::exists(homes[i] + "/Tessaly/.tessaly.lock"));
    }
    // The same user a second time is refused; nothing lands beside the program.
    auto again = inst.start(homes[0]);
    ASSERT_TRUE(again->waitForFinished(20000));
    EXPECT_TRUE(again->readAllStandardError().contains("已经运行！"));
    EXPECT_EQ(QDir(inst.root.filePath("bin")).entryList(QDir::Files | QDir::Hidden), QStringList{"tessaly"});
}

TEST(UserFolder, AFolderThatCannotBeMadeOrADamagedTemplateEndsTheProgram)
{
    // A file where the data home should be, or a template replaced by junk
    // (removed when the junk is empty).
    const std::tuple<const char *, QByteArray> cases[] = {
        {nullptr, {}}, {"user2.mdb", QByteArray(4096, 'x')}, {"user2.mdb", "SQLite"}, {"GpSh", {}}};
    for (const auto &[damaged, junk] : cases) {
        Installed inst;
        const QString home = inst.root.filePath("data");
        QFile spoilt(damaged ? inst.root.filePath(QStringLiteral("share/tessaly/") + damaged) : home);
        spoilt.remove();
        if (!damaged || !junk.isEmpty()) {
            ASSERT_TRUE(spoilt.open(QIODevice::WriteOnly) && spoilt.write(junk) == junk.size());
        }
        spoilt.close();
        auto p = inst.start(home);
        ASSERT_TRUE(p->waitForFinished(20000));
        EXPECT_NE(p->exitCode(), 0) << damaged;
        const QString err = QString::fromUtf8(p->readAllStandardError());
        EXPECT_TRUE(err.contains(home + "/Tessaly") && err.contains("数据文件夹")) << err.toStdString();
        EXPECT_FALSE(QFileInfo::exists(home + "/Tessaly") || QFileInfo::exists(inst.root.filePath("home"))) << damaged;
    }
}
