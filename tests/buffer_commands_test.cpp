// "Save Buffer" and "Load Buffer" on the real window: files, messages, and what a failure leaves.
#include <sys/stat.h>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

class BufferCommands : public WindowTest {
 protected:
  BufferCommands() { EXPECT_EQ(mkfifo(QFile::encodeName(Path("pipe")).constData(), 0600), 0); }

  QString Path(const QString& name) const { return folder_.filePath(name); }

  // `item` is "Save" or "Load", which is also the title of the message.
  void Choose(const QString& item, const std::optional<QString>& path, const QString& message) {
    files.answer = path;
    if (path) box.Expect(item, message);
    Trigger(item + "Buffer");
  }

 private:
  QTemporaryDir folder_;
};

TEST_F(BufferCommands, TheWorkedFileThereAndBack) {
  Load(ExampleSequences());
  Choose("Save", Path("a.dat"), "Data Saved!");
  EXPECT_EQ(ReadFile(Path("a.dat")).toStdString(), ExampleFile());
}

TEST_F(BufferCommands, AFailedSaveSaysWhy) {
  hands->Click("CommandAdd");
  for (const auto& [path, reason] :
       {std::pair(Path(""), "Is a directory"), std::pair(Path("pipe"), "No such device or address"),
        std::pair(QString("/dev/full"), "No space left on device")}) {
    Choose("Save", path, "The sequences could not be saved in " + path + ": " + reason);
  }
  EXPECT_EQ(Lines().size(), 1);
}

TEST_F(BufferCommands, ABadFileLeavesTheTableEmpty) {
  const auto example = QByteArray::fromStdString(ExampleFile());
  WriteFile(Path("empty"), "");
  WriteFile(Path("short"), example.chopped(20));
  WriteFile(Path("bytes"), QByteArray("\0\xff\x1a", 3).repeated(100000));
  for (const QString& path : {Path("empty"), Path("short"), Path("bytes"), Path("pipe"), Path(""),
                              Path("none"), QString("/dev/zero"), QString("/proc/self/mem")}) {
    SCOPED_TRACE(path.toStdString());
    Load(ExampleSequences());
    Choose("Load", path, "Format Error! Data Not Loaded!");
    EXPECT_TRUE(Lines().isEmpty());
    EXPECT_EQ(Table(), Sequences{});
  }
}

}  // namespace
}  // namespace pelmora
