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
    const auto do_work = [&] {
      worked = true;
      work(*Open());
    };
    hands->When([this] { return Open() != nullptr; }, do_work);
    hands->ChooseMenu(item);
    EXPECT_TRUE(worked);
    EXPECT_EQ(Open(), nullptr);
  }
  static QLineEdit& Name(const QFileDialog& dialog) {
    return *dialog.findChild<QLineEdit*>("fileNameEdit");
  }
  static void Enter(QFileDialog& dialog, const QString& name) {
    Name(dialog).setFocus();
    Name(dialog).selectAll();
    QTest::keyClicks(&Name(dialog), name);
    QTest::keyClick(&Name(dialog), Qt::Key_Return);
  }

  QString Path(const QString& name) const { return folder_.filePath(name); }
  void Touch(const QString& name) const { QFile(Path(name)).open(QIODevice::WriteOnly); }
  QStringList Files(const QString& folder = "") const {
    return QDir(Path(folder)).entryList(QDir::Files, QDir::Name);
  }

  QTemporaryDir folder_;
};

TEST_F(FileDialog, SaveProposesANameAndCompletesIt) {
  box.Expect("Save", "Data Saved!");
  InDialog("SaveBuffer", [this](QFileDialog& dialog) {
    dialog.setDirectory(folder_.path());
    EXPECT_EQ(Name(dialog).text(), "Sequences 1");
    const auto& types = *dialog.findChild<QComboBox*>("fileTypeCombo");
    QStringList shown;
    for (int i = 0; i < types.count(); ++i) shown.append(types.itemText(i));
    EXPECT_EQ(shown, QStringList({"Data Files (*.dat)", "Text Files(*.txt)", "All Files (*.*)"}));
    EXPECT_EQ(types.currentIndex(), 0);
    QTest::keyClick(&Name(dialog), Qt::Key_Return);
  });
  EXPECT_EQ(Files(), QStringList{"Sequences 1.dat"});

  Touch("bare");
  struct Case {
    int type;  // entry of the list of file types
    const char* typed;
    const char* file;
  };
  const Case cases[] = {{0, "bare", "bare.dat"},
                        {0, "b.txt", "b.txt"},
                        {0, "C.DAT", "C.DAT"},
                        {0, "Walk v1.2", "Walk v1.2.dat"},
                        {2, "Walk v1.2", "Walk v1.2"},
                        {2, "all", "all.dat"},
                        {0, "\"a\" \"b\"", "\"a\" \"b\".dat"},
                        {1, "d.dat", "d.dat"}};
  QStringList expected = {"Sequences 1.dat", "bare"};
  for (const Case& c : cases) {
    box.Expect("Save", "Data Saved!");
    InDialog("SaveBuffer", [&c](QFileDialog& dialog) {
      auto& types = *dialog.findChild<QComboBox*>("fileTypeCombo");
      types.setCurrentIndex(c.type);
      emit types.activated(c.type);
      Enter(dialog, c.typed);
    });
    expected.append(c.file);
    expected.sort();
    QStringList found = Files();
    found.sort();
    EXPECT_EQ(found, expected) << c.typed;
  }
  EXPECT_EQ(QFile(Path("bare")).size(), 0);
}

TEST_F(FileDialog, LoadsTheFileThatIsMeant) {
  AddStep(0, 200, 100);
  box.Expect("Save", "Data Saved!");
  InDialog("SaveBuffer", [this](QFileDialog& dialog) {
    dialog.setDirectory(folder_.path());
    Enter(dialog, "quo\"te");
  });
  for (const char* name : {"none.dat", "none/a.dat"}) {
    box.Expect("Load", "Format Error! Data Not Loaded!");
    InDialog("LoadBuffer", [name](QFileDialog& dialog) { Enter(dialog, name); });
  }
  box.Expect("Load", "Data Loaded!");
  InDialog("LoadBuffer", [](QFileDialog& dialog) { Enter(dialog, "quo\"te.dat"); });
  EXPECT_EQ(Lines().size(), 1);
}

TEST_F(FileDialog, ReplacesAFileWithoutAQuestionAndOpensInTheFolderUsedLast) {
  box.Expect("Save", "Data Saved!");
  InDialog("SaveBuffer", [this](QFileDialog& dialog) {
    dialog.setDirectory(folder_.path());
    Enter(dialog, "sub");  // a folder is entered
    EXPECT_EQ(Open(), &dialog);
    EXPECT_EQ(dialog.directory().dirName(), "sub");
    Enter(dialog, "a");
  });
  AddStep(0, 200, 100);
  box.Expect("Save", "Data Saved!");
  InDialog("SaveBuffer", [](QFileDialog& dialog) { Enter(dialog, "a.dat"); });
  EXPECT_EQ(Files("sub"), QStringList{"a.dat"});
  box.Expect("Load", "Data Loaded!");
  InDialog("LoadBuffer", [](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().dirName(), "sub");
    EXPECT_EQ(Name(dialog).text(), "");
    Enter(dialog, "a.dat");
  });
  EXPECT_EQ(Lines().size(), 1);
}

TEST_F(FileDialog, AllFilesAreShownAlsoThoseWithoutADot) {
  for (const char* name : {"plain", "x.dat", "y.txt"}) Touch(name);
  InDialog("LoadBuffer", [this](QFileDialog& dialog) {
    dialog.setDirectory(folder_.path());
    auto& types = *dialog.findChild<QComboBox*>("fileTypeCombo");
    auto& list = *dialog.findChild<QListView*>("listView");
    const auto shown = [&list] {
      QStringList names;
      for (int i = 0; i < list.model()->rowCount(list.rootIndex()); ++i) {
        names.append(list.model()->index(i, 0, list.rootIndex()).data().toString());
      }
      names.sort();
      return names;
    };
    const QStringList expected[] = {
        {"sub", "x.dat"}, {"sub", "y.txt"}, {"plain", "sub", "x.dat", "y.txt"}};
    for (int i = 0; i < 3; ++i) {
      types.setCurrentIndex(i);
      emit types.activated(i);
      EXPECT_TRUE(hands->WaitUntil([&] { return shown() == expected[i]; })) << i;
    }
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  EXPECT_TRUE(Lines().isEmpty());
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
