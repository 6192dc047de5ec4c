// Saving: what a finished and a failed save leave in the folder.
#include "files/save_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <string>
#include <thread>

namespace pelmora {
namespace {

constexpr char kUnchanged[] = "\n\nThe earlier file of this name is unchanged.";

class SaveFileTest : public testing::Test {
 protected:
  // Open to the ordinary user of these tests.
  SaveFileTest() { chmod(Encoded(folder_.path()).constData(), 0777); }

  static QByteArray Encoded(const QString& path) { return QFile::encodeName(path); }
  QString Path(const QString& name) const { return folder_.filePath(name); }
  static QByteArray Content(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
  }
  QString Make(const QString& name, mode_t mode) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("earlier");
    EXPECT_EQ(chmod(Encoded(Path(name)).constData(), mode), 0);
    return Path(name);
  }
  mode_t Mode(const QString& name) const {
    struct stat status {};
    EXPECT_EQ(stat(Encoded(Path(name)).constData(), &status), 0);
    return status.st_mode & 07777U;
  }
  QStringList Names() const {
    return QDir(folder_.path())
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden | QDir::System,
                   QDir::Name);
  }

  // What an ordinary user is told whose files may grow to `limit` bytes.
  static std::string SavedByOrdinaryUser(const QString& path, std::string_view content,
                                         rlim_t limit) {
    int ends[2];
    if (pipe(ends) != 0) return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
      const rlimit small{limit, limit};
      if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(1);
      setrlimit(RLIMIT_FSIZE, &small);
      const QByteArray said = SaveFile(path, content).value_or("saved").toUtf8();
      _exit(write(ends[1], said.constData(), static_cast<std::size_t>(said.size())) < 0 ? 1 : 0);
    }
    close(ends[1]);
    char said[1000];
    const ssize_t length = read(ends[0], said, sizeof said);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) return "ended by signal " + std::to_string(WTERMSIG(status));
    return {said, length > 0 ? static_cast<std::size_t>(length) : 0};
  }

  const QTemporaryDir folder_;
};

TEST_F(SaveFileTest, KeepsLinksAndPermissions) {
  Make("target", 0640);
  Make("script", 0755);
  ASSERT_TRUE(QFile::link("target", Path("link")));
  ASSERT_TRUE(QFile::link("later", Path("dangling")));
  for (const char* name : {"link", "script", "new", "dangling"}) {
    EXPECT_EQ(SaveFile(Path(name), "content"), std::nullopt) << name;
    EXPECT_EQ(Content(Path(name)), "content") << name;
  }
  EXPECT_EQ(Content(Path("target")), "content");
  EXPECT_EQ(Names(), QStringList({"dangling", "later", "link", "new", "script", "target"}));
  EXPECT_TRUE(QFileInfo(Path("link")).isSymLink());
  EXPECT_TRUE(QFileInfo(Path("dangling")).isSymLink());
  EXPECT_EQ(Mode("target"), 0640U);
  EXPECT_EQ(Mode("script"), 0755U);
  const mode_t mask = umask(0);
  umask(mask);
  EXPECT_EQ(Mode("new"), 0666U & ~mask);
}

TEST_F(SaveFileTest, AFailureLeavesTheEarlierFileAndNothingElse) {
  const std::string content(3000, 'x');
  constexpr rlim_t kSmall = 1000;
  const QString old = Make("old", 0666);
  EXPECT_EQ(SavedByOrdinaryUser(Path("new"), content, kSmall), "File too large");
  EXPECT_EQ(SavedByOrdinaryUser(old, content, kSmall), std::string("File too large") + kUnchanged);
  EXPECT_EQ(SavedByOrdinaryUser(old, content, 0), std::string("File too large") + kUnchanged);
  EXPECT_EQ(Names(), QStringList{"old"});
  EXPECT_EQ(Content(old), "earlier");
  EXPECT_EQ(SavedByOrdinaryUser(old, content, RLIM_INFINITY), "saved");
  EXPECT_EQ(Content(old).size(), 3000);
}

TEST_F(SaveFileTest, WritesInPlaceWhereTheFolderTakesNoNewFile) {
  const QString old = Make("old", 0666);
  ASSERT_EQ(chmod(Encoded(folder_.path()).constData(), 0555), 0);
  const std::string content(3000, 'x');
  EXPECT_EQ(SavedByOrdinaryUser(Path("new"), content, RLIM_INFINITY), "Permission denied");
  EXPECT_EQ(SavedByOrdinaryUser(old, content, RLIM_INFINITY), "saved");
  EXPECT_EQ(Content(old).size(), 3000);
  EXPECT_EQ(SavedByOrdinaryUser(old, content, 1000),
            "File too large\n\nThe earlier file of this name is damaged: its folder takes no new "
            "files, so it had to be written over.");
  chmod(Encoded(folder_.path()).constData(), 0777);  // so that it can be removed
}

TEST_F(SaveFileTest, APipeIsServedAsLongAsItIsRead) {
  const QString pipe = Path("pipe");
  ASSERT_EQ(mkfifo(Encoded(pipe).constData(), 0600), 0);
  EXPECT_EQ(SaveFile(pipe, "x"), "No such device or address");
  const std::string content(300000, 'x');  // more than a pipe holds
  for (const std::size_t wanted : {content.size(), std::size_t{1000}}) {
    const int end = open(Encoded(pipe).constData(), O_RDONLY | O_NONBLOCK);
    std::size_t taken = 0;
    std::jthread reader([&] {
      std::vector<char> buffer(1000);
      while (taken < wanted) {
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
