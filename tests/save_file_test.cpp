// Saving: what a finished and a failed save leave in the folder.
#include "files/save_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <thread>

namespace pelmora {
namespace {

namespace fs = std::filesystem;
using fs::perms;

class SaveFileTest : public testing::Test {
 protected:
  SaveFileTest() { fs::permissions(Path(), perms::all); }  // to the ordinary user, too
  ~SaveFileTest() override { fs::permissions(Path(), perms::all); }

  fs::path Path(const std::string& name = "") const {
    return folder_.filePath(QString::fromStdString(name)).toStdString();
  }
  std::string Content(const std::string& name) const {
    std::ifstream file(Path(name));
    return {std::istreambuf_iterator(file), {}};
  }
  void Make(const std::string& name, perms mode) const {
    std::ofstream(Path(name)) << "earlier";
    fs::permissions(Path(name), mode);
  }
  auto Files() const {
    return std::distance(fs::directory_iterator(Path()), fs::directory_iterator());
  }

  // What the operator is told.
  std::string Save(const std::string& name, const std::string& content) const {
    return SaveFile(QString::fromStdString(Path(name)), content).value_or("saved").toStdString();
  }
  // The same of 3000 bytes for an ordinary user whose files may grow to `limit` bytes.
  std::string SavedByOrdinaryUser(const std::string& name, rlim_t limit) const {
    const uid_t user = geteuid();
    EXPECT_EQ(seteuid(user == 0 ? 65534 : user), 0);
    rlimit former{};
    getrlimit(RLIMIT_FSIZE, &former);
    const rlimit small{limit, former.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const std::string said = Save(name, std::string(3000, 'x'));
    setrlimit(RLIMIT_FSIZE, &former);
    EXPECT_EQ(seteuid(user), 0);
    return said;
  }

 private:
  const QTemporaryDir folder_;
};

TEST_F(SaveFileTest, KeepsLinksAndPermissions) {
  Make("target", perms(0640));
  Make("script", perms(0755));
  umask(022);
  fs::create_symlink("target", Path("link"));
  fs::create_symlink("later", Path("dangling"));
  const std::tuple<const char*, const char*, int> cases[] = {{"link", "target", 0640},
                                                             {"script", "script", 0755},
                                                             {"new", "new", 0644},
                                                             {"dangling", "later", 0644}};
  for (const auto& [name, file, mode] : cases) {
    EXPECT_EQ(Save(name, "content"), "saved") << name;
    EXPECT_EQ(Content(file), "content") << name;
    EXPECT_EQ(fs::status(Path(file)).permissions(), perms(mode)) << name;
  }
  EXPECT_EQ(Files(), 6);
  EXPECT_TRUE(fs::is_symlink(Path("link")) && fs::is_symlink(Path("dangling")));
}

TEST_F(SaveFileTest, AFailureLeavesTheEarlierFileAndNothingElse) {
  Make("old", perms(0666));
  EXPECT_EQ(SavedByOrdinaryUser("new", 1000), "File too large");
  for (const rlim_t limit : {1000, 0}) {
    EXPECT_EQ(SavedByOrdinaryUser("old", limit),
              "File too large\n\nThe earlier file of this name is unchanged.");
  }
  EXPECT_EQ(Files(), 1);
  EXPECT_EQ(Content("old"), "earlier");
}

TEST_F(SaveFileTest, WritesInPlaceWhereTheFolderTakesNoNewFile) {
  Make("old", perms(0666));
  fs::permissions(Path(), perms(0555));
  EXPECT_EQ(SavedByOrdinaryUser("new", RLIM_INFINITY), "Permission denied");
  EXPECT_EQ(SavedByOrdinaryUser("old", RLIM_INFINITY), "saved");
  EXPECT_EQ(Content("old"), std::string(3000, 'x'));
  EXPECT_EQ(SavedByOrdinaryUser("old", 1000),
            "File too large\n\nThe earlier file of this name is damaged: its folder takes no new "
            "files, so it had to be written over.");
}

TEST_F(SaveFileTest, APipeIsServedAsLongAsItIsRead) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(Save("pipe", "x"), "No such device or address");
  constexpr std::size_t kLength = 300000;  // more than a pipe holds
  for (const std::size_t wanted : {kLength, std::size_t{1000}}) {
    const int end = open(Path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    std::jthread reader([end, wanted] {
      char buffer[1000];
      for (std::size_t taken = 0; taken < wanted; usleep(10)) {
        taken += static_cast<std::size_t>(std::max<ssize_t>(0, read(end, buffer, sizeof buffer)));
      }
      close(end);
    });
    EXPECT_EQ(Save("pipe", std::string(kLength, 'x')), wanted == kLength ? "saved" : "Broken pipe");
  }
}

}  // namespace
}  // namespace pelmora
