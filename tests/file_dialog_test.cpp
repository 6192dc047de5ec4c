// The Open / Save dialog on the screen, worked with keys and the mouse.

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

class FileDialog : public WindowTest {
 protected:
  FileDialog() {
    QDir(folder.path()).mkdir("sub");
    Restart({.file_dialogs = true});
  }

  QFileDialog* Open() const { return form->findChild<QFileDialog*>("FileDialog"); }

  // Chooses a menu item and does `work` in the dialog that it opens; this message comes then.
  void InDialog(const char* item, const QString& message, const std::function<void()>& work) {
    bool worked = false;
    const auto do_work = [&] {
      if (!std::exchange(opened_, true)) Open()->setDirectory(folder.path());
      work();
      worked = true;
    };
    if (!message.isEmpty()) box.Expect(QString(item).left(4), message);
    hands->When([this] { return Open() != nullptr; }, do_work);
    hands->ChooseMenu(item);
    EXPECT_TRUE(worked);
    EXPECT_EQ(Open(), nullptr);
  }
  void Save(const QString& name, int type = 0) {
    InDialog("SaveBuffer", "Data Saved!", [&] {
      ChooseType(type);
      hands->Type(kName, name);
    });
  }
  void ChooseType(int type) {
    auto& types = hands->Find<QComboBox>(kTypes);
    types.setCurrentIndex(type);
    emit types.activated(type);
  }

  void Touch(const QString& name) const { WriteFile(folder.filePath(name), ""); }
  QStringList Files(const QString& name = "") const {
    return QDir(folder.filePath(name)).entryList(QDir::Files);
  }

  static constexpr char kName[] = "fileNameEdit";
  static constexpr char kTypes[] = "fileTypeCombo";
  QTemporaryDir folder;

 private:
  bool opened_ = false;
};

TEST_F(FileDialog, SaveNamesTheFileThatItWouldReplace) {
  const QString long_name(200, 'x');
  for (const QString& name : {QString("Walk.dat"), QString("Walk.1.dat"), long_name + ".dat"}) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.setFileTime(QDateTime({2026, 11, 22}, {14, 3}), QFileDevice::FileModificationTime);
  }
  const std::pair<const char*, const char*> cases[] = {{"Walk", "Walk.dat"},
                                                       {"Walk.dat", "Walk.dat"},
                                                       {"sub/Walk", ""},
                                                       {"Walk.1", "Walk.1.dat"},
                                                       {"sub/../Walk", "Walk.dat"},
                                                       {"sub", ""},
                                                       {"Walk.txt", ""},
                                                       {"", ""}};
  InDialog("SaveBuffer", "", [&] {
    // Without the focus the field follows what is selected in the folder.
    QApplication::setActiveWindow(Open());
    auto& name = hands->Find<QLineEdit>(kName);
    name.setFocus();
    for (const auto& [typed, replaced] : cases) {
      name.setText(typed);
      const QString line = QString("Replaces %1 of 22 Nov 2026, 14:03").arg(replaced);
      EXPECT_EQ(hands->Read("LabelReplaced"), *replaced ? line : "") << typed;
    }
    const int width = Open()->width();
    name.setText(long_name);
    EXPECT_LT(hands->Read("LabelReplaced").size(), 90);
    EXPECT_EQ(Open()->width(), width);
    Open()->reject();
  });
}

TEST_F(FileDialog, SaveProposesANameAndCompletesIt) {
  InDialog("SaveBuffer", "Data Saved!", [this] {
    EXPECT_EQ(hands->Read(kTypes), "Data Files (*.dat)");
    EXPECT_EQ(hands->Find<QComboBox>(kTypes).itemText(1), "Text Files(*.txt)");
    EXPECT_EQ(hands->Find<QComboBox>(kTypes).itemText(2), "All Files (*.*)");
    QTest::keyClick(&hands->Find<QWidget>(kName), Qt::Key_Return);
  });
  EXPECT_EQ(Files(), QStringList{"Sequences 1.dat"});
  // clang-format off
  const std::tuple<int, const char*, const char*> cases[] = {
      {0, "bare", "bare.dat"},  {0, "C.DAT", "C.DAT"},  {0, "Walk v1.2", "Walk v1.2.dat"},
      {0, "b.txt", "b.txt"},    {1, "d.dat", "d.dat"},  {2, "Walk v1.2", "Walk v1.2"},
      {2, "all", "all.dat"},    {0, "\"a\" \"b\"", "\"a\" \"b\".dat"}};
  // clang-format on
  Touch("bare");  // another file
  for (const auto& [type, typed, file] : cases) {
    const QStringList before = Files();
    Save(typed, type);
    EXPECT_TRUE(Files().contains(file)) << file;
    EXPECT_EQ(Files().size(), before.size() + 1) << file;
  }
}

TEST_F(FileDialog, ReplacesAFileWithoutAQuestionAndOpensInTheFolderUsedLast) {
  Touch("sub/a.dat");
  AddStep(0, 200, 100);
  InDialog("SaveBuffer", "Data Saved!", [this] {
    hands->Type(kName, "sub");  // a folder is entered
    hands->Type(kName, "a");
  });
  InDialog("SaveBuffer", "", [this] {
    hands->Type(kName, folder.path());
    QTest::keyClick(Open(), Qt::Key_Escape);
  });
  Save("quo\"te");
  EXPECT_EQ(Files("sub"), QStringList({"a.dat", "quo\"te.dat"}));
  for (const QString name : {"none.dat", "none/a.dat", "quo\"te.dat", "a.dat"}) {
    const bool there = Files("sub").contains(name);
    const char* message = there ? "Data Loaded!" : "Format Error! Data Not Loaded!";
    InDialog("LoadBuffer", message, [this, name] {
      EXPECT_EQ(hands->Read(kName), "");
      hands->Type(kName, name);
    });
    EXPECT_EQ(Lines().size(), there ? 1 : 0) << name.toStdString();
  }
}

TEST_F(FileDialog, AllFilesAreShownAlsoThoseWithoutADot) {
  for (const char* name : {"plain", "x.dat", "z.dat", "y.txt"}) Touch(name);
  InDialog("LoadBuffer", "", [this] {
    EXPECT_EQ(Open()->findChild<QLabel*>("LabelReplaced"), nullptr);
    const auto& list = hands->Find<QListView>("listView");
    for (const auto& [type, shown] : {std::pair(0, 3), std::pair(1, 2), std::pair(2, 5)}) {
      ChooseType(type);  // the folder is always shown
      const auto is_shown = [&] { return list.model()->rowCount(list.rootIndex()) == shown; };
      EXPECT_TRUE(hands->WaitUntil(is_shown)) << type;
    }
    QTest::keyClick(Open(), Qt::Key_Escape);
  });
}

TEST_F(FileDialog, ReadsNoFileThatItLists) {
  WriteFile(folder.filePath("picture.dat"), "\x89PNG\r\n\x1a\n");
  InDialog("LoadBuffer", "", [this] {
    const auto& list = hands->Find<QListView>("listView");
    const auto type = [&] {
      const int rows = list.model()->rowCount(list.rootIndex());
      return list.model()->index(rows - 1, 2, list.rootIndex()).data().toString();
    };
    EXPECT_TRUE(hands->WaitUntil([&] { return type() == "File"; })) << type().toStdString();
    QTest::keyClick(Open(), Qt::Key_Escape);
  });
}

TEST_F(FileDialog, DeletesNothing) {
  Touch("sub/a.dat");
  const auto question = [this] { return Open() ? Open()->findChild<QMessageBox*>() : nullptr; };
  bool asked = false;
  for (const char* item : {"SaveBuffer", "LoadBuffer"}) {
    InDialog(item, "", [this, question, &asked] {
      hands->When([question] { return question() != nullptr; },
                  [&asked, question] {
                    asked = true;
                    question()->button(QMessageBox::No)->click();
                  });
      auto& tree = *Open()->findChild<QAbstractItemView*>("treeView");
      QAbstractItemView& view = tree.isVisible() ? tree : hands->Find<QListView>("listView");
      EXPECT_TRUE(hands->WaitUntil([&] { return view.model()->rowCount(view.rootIndex()) > 0; }));
      view.setCurrentIndex(view.model()->index(0, 0, view.rootIndex()));
      hands->Keys(view, "Del");
      hands->Wait(100);
      EXPECT_FALSE(hands->Find<QAction>("qt_delete_action").isVisible()) << "in the menu";
      QTest::keyClick(Open(), Qt::Key_Escape);
    });
  }
  EXPECT_FALSE(asked);
  EXPECT_EQ(Files("sub"), QStringList("a.dat"));
}

}  // namespace
}  // namespace pelmora
