#include "bench/program_window.h"

#include <QAction>
#include <QFile>
#include <algorithm>
#include <memory>
#include <random>

#include "core/declaration.h"
#include "files/buffer_file.h"
#include "platform/drop_down_list.h"

namespace bench {
namespace {

constexpr unsigned kSeed = 1;

}  // namespace

ProgramWindow::ProgramWindow(simboard::Pace pace)
    : board_(pace), ports_(board_), form_({events_, box_, dialog_, timer_, ports_}) {
  dialog_.path = File();
  form_.show();
  auto& combo = Find<platform::DropDownList>("ComboPort");
  combo.setCurrentIndex(0);
  emit combo.activated(0);
  if (combo.isEnabled()) qFatal("the simulated board can't be opened");
}

void ProgramWindow::Load(int steps, int ticks) {
  std::mt19937 random(kSeed);
  const auto data = std::make_unique<pelmora::Declaration>();
  for (std::size_t sequence = 0; sequence < pelmora::kSequences; ++sequence) {
    const int count = std::min(steps, pelmora::kSteps);
    steps -= count;
    data->SeqSteps[sequence] = static_cast<std::int16_t>(count);
    for (std::size_t step = 0; step < static_cast<std::size_t>(count); ++step) {
      auto& record = data->SeqTable[sequence];
      for (auto& position : record.Position[step]) position = static_cast<std::uint8_t>(random());
      record.Duration[step] = static_cast<std::int16_t>(ticks * pelmora::kBoardTickMs);
    }
  }
  QFile file(File());
  if (!file.open(QIODevice::WriteOnly)) qFatal("no room for a temporary file");
  file.write(QByteArray::fromStdString(pelmora::FormatBufferFile(*data)));
  file.close();
  LoadAgain();
}

void ProgramWindow::LoadAgain() {
  Find<QAction>("LoadBuffer").trigger();
  RequireMessage("Data Loaded!");
}

void ProgramWindow::Save() {
  Find<QAction>("SaveBuffer").trigger();
  RequireMessage("Data Saved!");
}

void ProgramWindow::RequireMessage(const char* text) const {
  if (box_.last != QLatin1String(text)) {
    qFatal("\"%s\" instead of \"%s\"", qPrintable(box_.last), text);
  }
}

}  // namespace bench
