// Saving: what a finished and a failed save leave in the folder.
#include "files/save_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QTemporaryDir>
#include <string>
#include <thread>

namespace pelmora {
namespace {

constexpr char kUnchanged[] = "\n\nThe earlier file of this name is unchanged.";

class SaveFileTest : public testing::Test {
 protected:
  SaveFileTest() { OpenFolder(0777); }
  ~SaveFileTest() override { OpenFolder(0777); }  // so that it can be removed

  // To the ordinary user of these tests.
  void OpenFolder(mode_t mode) const { EXPECT_EQ(chmod(Encoded("").c_str(), mode), 0); }
  QString Path(const QString& name) const { return folder_.filePath(name); }
  std::string Encoded(const QString& name) const {
    return QFile::encodeName(Path(name)).toStdString();
  }
  QByteArray Content(const QString& name) const {
    QFile file(Path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
  }
  void Make(const QString& name, mode_t mode) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("earlier");
    EXPECT_EQ(chmod(Encoded(name).c_str(), mode), 0);
  }
  mode_t Mode(const QString& name) const {
    struct stat status {};
    EXPECT_EQ(stat(Encoded(name).c_str(), &status), 0);
    return status.st_mode & 07777U;
  }
  QStringList Names() const {
    return QDir(folder_.path())
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden | QDir::System,
                   QDir::Name);
  }

  // What an ordinary user is told who saves 3000 bytes and whose files may grow to `limit` bytes.
  std::string SavedByOrdinaryUser(const QString& name, rlim_t limit) const {
    const uid_t user = geteuid();
    EXPECT_EQ(seteuid(user == 0 ? 65534 : user), 0);
    rlimit former{};
    getrlimit(RLIMIT_FSIZE, &former);
    const rlimit small{limit, former.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const std::optional<QString> reason = SaveFile(Path(name), std::string(3000, 'x'));
    setrlimit(RLIMIT_FSIZE, &former);
    EXPECT_EQ(seteuid(user), 0);
    return reason.value_or("saved").toStdString();
  }

 private:
  const QTemporaryDir folder_;
};

TEST_F(SaveFileTest, KeepsLinksAndPermissions) {
  Make("target", 0640);
  Make("script", 0755);
  ASSERT_TRUE(QFile::link("target", Path("link")));
  ASSERT_TRUE(QFile::link("later", Path("dangling")));
  for (const char* name : {"link", "script", "new", "dangling"}) {
    EXPECT_EQ(SaveFile(Path(name), "content"), std::nullopt) << name;
    EXPECT_EQ(Content(name), "content") << name;
  }
  EXPECT_EQ(Content("target"), "content");
  EXPECT_EQ(Names(), QStringList({"dangling", "later", "link", "new", "script", "target"}));
  for (const char* name : {"link", "dangling"}) EXPECT_TRUE(QFileInfo(Path(name)).isSymLink());
  const mode_t mask = umask(0);
  umask(mask);
  EXPECT_EQ(Mode("target"), 0640U);
  EXPECT_EQ(Mode("script"), 0755U);
  EXPECT_EQ(Mode("new"), 0666U & ~mask);
}

TEST_F(SaveFileTest, AFailureLeavesTheEarlierFileAndNothingElse) {
  Make("old", 0666);
  EXPECT_EQ(SavedByOrdinaryUser("new", 1000), "File too large");
  for (const rlim_t limit : {1000, 0}) {
    EXPECT_EQ(SavedByOrdinaryUser("old", limit), std::string("File too large") + kUnchanged);
  }
  EXPECT_EQ(Names(), QStringList{"old"});
  EXPECT_EQ(Content("old"), "earlier");
}

TEST_F(SaveFileTest, WritesInPlaceWhereTheFolderTakesNoNewFile) {
  Make("old", 0666);
  OpenFolder(0555);
  EXPECT_EQ(SavedByOrdinaryUser("new", RLIM_INFINITY), "Permission denied");
  EXPECT_EQ(SavedByOrdinaryUser("old", RLIM_INFINITY), "saved");
  EXPECT_EQ(Content("old").size(), 3000);
  EXPECT_EQ(SavedByOrdinaryUser("old", 1000),
            "File too large\n\nThe earlier file of this name is damaged: its folder takes no new "
            "files, so it had to be written over.");
}

TEST_F(SaveFileTest, APipeIsServedAsLongAsItIsRead) {
  const QString pipe = Path("pipe");
  ASSERT_EQ(mkfifo(Encoded("pipe").c_str(), 0600), 0);
  EXPECT_EQ(SaveFile(pipe, "x"), "No such device or address");
  const std::string content(300000, 'x');  // more than a pipe holds
  for (const std::size_t wanted : {content.size(), std::size_t{1000}}) {
    const int end = open(Encoded("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    std::jthread reader([&] {
      std::vector<char> buffer(1000);
      for (std::size_t taken = 0; taken < wanted;) {
        const ssize_t count = read(end, buffer.data(), buffer.size());
        if (count > 0) taken += static_cast<std::size_t>(count);
        if (count <= 0) usleep(1000);
      }
      close(end);
    });
    const std::optional<QString> reason = SaveFile(pipe, content);
    EXPECT_EQ(reason.value_or("saved"), wanted == content.size() ? "saved" : "Broken pipe");
  }
}

}  // namespace
}  // namespace pelmora
