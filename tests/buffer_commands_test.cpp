// "Save Buffer" and "Load Buffer" on the real window: files, messages, and what a failure leaves.
#include <sys/stat.h>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

constexpr char kFormatError[] = "Format Error! Data Not Loaded!";

QByteArray EmptyFile() {
  return QByteArray::fromStdString(FileOf({}));
}

class BufferCommands : public WindowTest {
 protected:
  QString Path(const QString& name) const { return folder_.filePath(name); }

  QByteArray Content(const QString& path) const {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
  }
  QString Make(const QString& name, const QByteArray& content) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return Path(name);
  }

  void Save(const QString& path, const QString& message) {
    files.answer = path;
    box.Expect("Save", message);
    Trigger("SaveBuffer");
  }
  void Load(const QString& path, const QString& message) {
    files.answer = path;
    box.Expect("Load", message);
    Trigger("LoadBuffer");
  }

  // Two steps in sequence 0, one in sequence 3, which stays the current one.
  void ComposeExample() {
    AddStep(0, 128, 100);
    AddStep(0, 255, 1000);
    for (int i = 0; i < 3; ++i) hands->Click("CommandMoreSeq");
    for (int i = 0; i < kChannels; ++i) hands->Type(QString("Text1_%1").arg(i), "-128", false);
    AddStep(0, 0, 5120);
  }

  void ExpectAllEmpty() const {
    EXPECT_TRUE(Lines().isEmpty());
    EXPECT_EQ(Data().CurSeq, 0);
    EXPECT_EQ(Data().SeqSteps, decltype(Data().SeqSteps){});
    EXPECT_EQ(hands->Read("LabelSeq"), "Sequence N° 0");
    EXPECT_EQ(hands->Read("LabelStep"), "Step N° ...");
    for (const SequenceRecord& record : Data().SeqTable) {
      EXPECT_EQ(record.Position, decltype(record.Position){});
      EXPECT_EQ(record.Duration, decltype(record.Duration){});
    }
  }

 private:
  QTemporaryDir folder_;
};

TEST_F(BufferCommands, TheWorkedFileThereAndBack) {
  ComposeExample();
  Save(Path("a.dat"), "Data Saved!");
  EXPECT_EQ(Content(Path("a.dat")).toStdString(), ExampleFile());
  ASSERT_EQ(files.requests.size(), 1U);
  EXPECT_EQ(files.requests[0].filter,
            "Data Files (*.dat)|*.dat|Text Files(*.txt)|*.txt|All Files (*.*)|*.*");
  EXPECT_EQ(files.requests[0].default_extension, ".dat");
  EXPECT_EQ(files.requests[0].proposed_name, "Sequences 1");

  hands->Click("CommandClearAll");
  AddStep(5, 7, 20);
  Load(Path("a.dat"), "Data Loaded!");
  EXPECT_EQ(files.requests[1].filter, files.requests[0].filter);
  EXPECT_EQ(files.requests[1].proposed_name, "");
  EXPECT_EQ(Lines().size(), 2);
  EXPECT_TRUE(Lines()[1].startsWith(Local("63.5 °\t0 °\t")));
  EXPECT_TRUE(Lines()[1].endsWith("\t1000  ms\t"));
  EXPECT_EQ(Selected(), -1);
  EXPECT_EQ(hands->Read("LabelSeq"), "Sequence N° 0");
  EXPECT_EQ(hands->Read("LabelStep"), "Step N° ...");
  EXPECT_EQ(hands->Read("LabelByte"), "42 bytes");
  EXPECT_EQ(Data().SeqOffset[3], 28);
  Save(Path("b.dat"), "Data Saved!");
  EXPECT_EQ(Content(Path("b.dat")).toStdString(), ExampleFile());
}

TEST_F(BufferCommands, EverySaveCountsAndStores) {
  AddStep(0, 128, 100);
  hands->Click("CommandBrk");
  hands->ChooseMenu("SaveBuffer");  // cancelled
  EXPECT_FALSE(Lines()[0].contains("BREAK!"));
  EXPECT_EQ(Data().EditBuffer[0][kBreakColumn], 0);
  hands->Click("CommandClear");
  EXPECT_EQ(Data().SeqSteps[0], 1);
  Save(Path("empty"), "Data Saved!");
  EXPECT_EQ(Content(Path("empty")), EmptyFile());
  EXPECT_EQ(files.requests[0].proposed_name, "Sequences 1");
  EXPECT_EQ(files.requests[1].proposed_name, "Sequences 2");
  Load(Path("empty"), "Data Loaded!");
  ExpectAllEmpty();
}

TEST_F(BufferCommands, AFailedSaveSaysWhy) {
  ComposeExample();
  const QString pipe = Path("pipe");
  ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  struct Case {
    QString path;
    const char* reason;
  };
  const Case cases[] = {{"/dev/full", "No space left on device"},
                        {Path(""), "Is a directory"},
                        {Path("none/a.dat"), "No such file or directory"},
                        {pipe, "No such device or address"}};
  for (const Case& c : cases) {
    Save(c.path, "The sequences could not be saved in " + c.path + ": " + c.reason);
  }
  EXPECT_EQ(Lines().size(), 1);
  EXPECT_EQ(Data().CurSeq, 3);
}

TEST_F(BufferCommands, ABadFileLeavesTheTableEmpty) {
  const QString pipe = Path("pipe");
  ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  const auto example = QByteArray::fromStdString(ExampleFile());
  const QString paths[] = {
      Make("lower", "i" + example.mid(1)),
      Make("cut", example.chopped(20)),
      Make("order", QByteArray(example).replace("Sequence 15", "Sequence 14")),
      Make("many", QByteArray(example).replace(" 2 ", " 300 ")),
      Make("negative", QByteArray(example).replace(" 1 ", "-1 ")),
      Make("text", QByteArray(example).replace("5120", "five")),
      Make("binary", QByteArray("\0\xff\x1a", 3).repeated(100000)),
      Make("nothing", ""),
      "/dev/zero",
      "/dev/full",
      pipe,
      Path(""),
      Path("none"),
      "/proc/self/mem",
  };
  for (const QString& path : paths) {
    SCOPED_TRACE(path.toStdString());
    hands->Click("CommandClearAll");
    ComposeExample();
    hands->Click("CommandBrk");
    Load(path, kFormatError);
    ExpectAllEmpty();
    for (const EditRow& row : Data().EditBuffer) EXPECT_EQ(row[kBreakColumn], 0);
  }
}

TEST_F(BufferCommands, ACancelledLoadLeavesEverythingEmptyWithoutAWord) {
  ComposeExample();
  hands->ChooseMenu("LoadBuffer");
  EXPECT_EQ(files.requests.size(), 1U);
  ExpectAllEmpty();
}

}  // namespace
}  // namespace pelmora
