// The Open / Save dialog on the screen, worked with keys and the mouse.
#include "platform/file_dialog.h"

#include <QDir>
#include <QFileDialog>
#include <QListView>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

class FileDialog : public WindowTest {
 protected:
  FileDialog() {
    QDir(folder_.path()).mkdir("sub");
    Restart({.file_dialogs = true});
  }

  QFileDialog* Open() const { return form->findChild<QFileDialog*>("FileDialog"); }

  // Chooses a menu item and does `work` in the dialog that it opens.
  void InDialog(const char* item, const std::function<void(QFileDialog&)>& work) {
    bool worked = false;
    hands->When([this] { return Open() != nullptr; },
                [&] {
                  if (!std::exchange(opened_, true)) Open()->setDirectory(folder_.path());
                  worked = true;
                  work(*Open());
                });
    hands->ChooseMenu(item);
    EXPECT_TRUE(worked);
    EXPECT_EQ(Open(), nullptr);
  }
  static QLineEdit& Name(const QFileDialog& dialog) {
    return *dialog.findChild<QLineEdit*>("fileNameEdit");
  }
  static void Enter(const QFileDialog& dialog, const QString& name) {
    Name(dialog).setFocus();
    Name(dialog).selectAll();
    QTest::keyClicks(&Name(dialog), name);
    QTest::keyClick(&Name(dialog), Qt::Key_Return);
  }
  static QComboBox& Types(const QFileDialog& dialog) {
    return *dialog.findChild<QComboBox*>("fileTypeCombo");
  }
  static void ChooseType(const QFileDialog& dialog, int type) {
    Types(dialog).setCurrentIndex(type);
    emit Types(dialog).activated(type);
  }

  void Save(const QString& name, int type = 0) {
    box.Expect("Save", "Data Saved!");
    InDialog("SaveBuffer", [&](QFileDialog& dialog) {
      ChooseType(dialog, type);
      Enter(dialog, name);
    });
  }
  void Load(const QString& name, const QString& message) {
    box.Expect("Load", message);
    InDialog("LoadBuffer", [&](QFileDialog& dialog) { Enter(dialog, name); });
  }

  QString Path(const QString& name) const { return folder_.filePath(name); }
  void Touch(const QString& name) const { QFile(Path(name)).open(QIODevice::WriteOnly); }
  QStringList Files(const QString& folder = "") const {
    return QDir(Path(folder)).entryList(QDir::Files, QDir::Name);
  }

 private:
  QTemporaryDir folder_;
  bool opened_ = false;
};

TEST_F(FileDialog, SaveProposesANameAndCompletesIt) {
  box.Expect("Save", "Data Saved!");
  InDialog("SaveBuffer", [](QFileDialog& dialog) {
    EXPECT_EQ(Name(dialog).text(), "Sequences 1");
    QStringList shown;
    for (int i = 0; i < Types(dialog).count(); ++i) shown.append(Types(dialog).itemText(i));
    EXPECT_EQ(shown, QStringList({"Data Files (*.dat)", "Text Files(*.txt)", "All Files (*.*)"}));
    EXPECT_EQ(Types(dialog).currentIndex(), 0);
    QTest::keyClick(&Name(dialog), Qt::Key_Return);
  });
  EXPECT_EQ(Files(), QStringList{"Sequences 1.dat"});

  Touch("bare");
  const std::tuple<int, const char*, const char*> cases[] = {{0, "bare", "bare.dat"},
                                                             {0, "b.txt", "b.txt"},
                                                             {0, "C.DAT", "C.DAT"},
                                                             {0, "Walk v1.2", "Walk v1.2.dat"},
                                                             {2, "Walk v1.2", "Walk v1.2"},
                                                             {2, "all", "all.dat"},
                                                             {0, "\"a\" \"b\"", "\"a\" \"b\".dat"},
                                                             {1, "d.dat", "d.dat"}};
  for (const auto& [type, typed, file] : cases) {
    QSet<QString> expected = {file};
    for (const QString& before : Files()) expected.insert(before);
    Save(typed, type);
    const QStringList found = Files();
    EXPECT_EQ(QSet<QString>(found.begin(), found.end()), expected) << typed;
  }
  EXPECT_EQ(QFile(Path("bare")).size(), 0);
}

TEST_F(FileDialog, LoadsTheFileThatIsMeant) {
  AddStep(0, 200, 100);
  Save("quo\"te");
  for (const char* name : {"none.dat", "none/a.dat"}) Load(name, "Format Error! Data Not Loaded!");
  Load("quo\"te.dat", "Data Loaded!");
  EXPECT_EQ(Lines().size(), 1);
}

TEST_F(FileDialog, ReplacesAFileWithoutAQuestionAndOpensInTheFolderUsedLast) {
  box.Expect("Save", "Data Saved!");
  InDialog("SaveBuffer", [this](QFileDialog& dialog) {
    Enter(dialog, "sub");  // a folder is entered
    EXPECT_EQ(Open(), &dialog);
    Enter(dialog, "a");
  });
  AddStep(0, 200, 100);
  Save("a.dat");
  EXPECT_EQ(Files("sub"), QStringList{"a.dat"});
  box.Expect("Load", "Data Loaded!");
  InDialog("LoadBuffer", [](QFileDialog& dialog) {
    EXPECT_EQ(Name(dialog).text(), "");
    Enter(dialog, "a.dat");
  });
  EXPECT_EQ(Lines().size(), 1);
}

TEST_F(FileDialog, AllFilesAreShownAlsoThoseWithoutADot) {
  for (const char* name : {"plain", "x.dat", "y.txt"}) Touch(name);
  InDialog("LoadBuffer", [this](QFileDialog& dialog) {
    const auto& list = *dialog.findChild<QListView*>("listView");
    const auto shown = [&list] {
      QSet<QString> names;
      for (int i = 0; i < list.model()->rowCount(list.rootIndex()); ++i) {
        names.insert(list.model()->index(i, 0, list.rootIndex()).data().toString());
      }
      return names;
    };
    const QSet<QString> expected[] = {
        {"sub", "x.dat"}, {"sub", "y.txt"}, {"plain", "sub", "x.dat", "y.txt"}};
    for (int i = 0; i < 3; ++i) {
      ChooseType(dialog, i);
      EXPECT_TRUE(hands->WaitUntil([&] { return shown() == expected[i]; })) << i;
    }
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
}

TEST_F(FileDialog, ClosesAsCancelledWithTheMainWindow) {
  InDialog("SaveBuffer", [this](QFileDialog& dialog) {
    hands->Click("CommandAdd");
    EXPECT_TRUE(Lines().isEmpty());
    EXPECT_TRUE(dialog.isVisible());
    // Behind a modal window it could not be closed by its close button.
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    form->close();
    EXPECT_TRUE(events.Ending());
  });
  EXPECT_EQ(Files(), QStringList{});
  hands->ChooseMenu("SaveBuffer");  // and none opens any more
}

}  // namespace
}  // namespace pelmora
