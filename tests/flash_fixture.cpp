#include "tests/flash_fixture.h"

#include <QAction>
#include <QFile>
#include <QProgressBar>
#include <QTemporaryDir>
#include <random>
#include <sstream>

#include "files/buffer_file.h"

namespace pelmora {
namespace {

constexpr std::size_t kMostSteps = 256;

void PutWord(Bytes& bytes, std::size_t value) {
  bytes.push_back(static_cast<std::uint8_t>(value >> 8));
  bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
}

}  // namespace

Bytes Hex(const std::string& text) {
  std::istringstream words(text);
  Bytes bytes;
  for (int byte = 0; words >> std::hex >> byte;) bytes.push_back(static_cast<std::uint8_t>(byte));
  return bytes;
}

Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

Bytes HeaderOf(const FlashSequences& sequences) {
  Bytes header;
  PutWord(header, StepDataOf(sequences).size());
  std::size_t offset = 0;
  for (const auto& sequence : sequences) {
    PutWord(header, sequence.size());
    PutWord(header, sequence.empty() ? 0 : offset);
    offset += 14 * sequence.size();
  }
  return header;
}

Bytes StepDataOf(const FlashSequences& sequences) {
  Bytes bytes;
  for (const auto& sequence : sequences) {
    for (const FlashStep& step : sequence) {
      bytes.insert(bytes.end(), step.positions.begin(), step.positions.end());
      PutWord(bytes, static_cast<std::size_t>(step.ticks));
    }
  }
  return bytes;
}

FlashSequences RandomSequences(unsigned seed, int steps) {
  std::mt19937 random(seed);
  FlashSequences sequences;
  while (steps > 0) {
    auto& sequence = sequences[random() % sequences.size()];
    if (sequence.size() == kMostSteps) continue;
    FlashStep step{};
    for (auto& position : step.positions) position = static_cast<std::uint8_t>(random());
    step.ticks = static_cast<int>(1 + random() % 1638);
    sequence.push_back(step);
    --steps;
  }
  return sequences;
}

FlashSequences ExampleSequences() {
  FlashSequences sequences;
  FlashStep step{};
  step.ticks = 256;
  sequences[3] = {step};
  step.positions.fill(128);
  step.ticks = 5;
  sequences[0] = {step};
  step.positions[0] = 255;
  step.ticks = 50;
  sequences[0].push_back(step);
  return sequences;
}

FlashTest::FlashTest() {
  Trigger("FreshProg");
  Trigger("Serial");
}

void FlashTest::Load(const FlashSequences& sequences) {
  const auto data = std::make_unique<Declaration>();
  for (std::size_t i = 0; i < sequences.size(); ++i) {
    data->SeqSteps[i] = static_cast<std::int16_t>(sequences[i].size());
    for (std::size_t s = 0; s < sequences[i].size(); ++s) {
      data->SeqTable[i].Position[s] = sequences[i][s].positions;
      data->SeqTable[i].Duration[s] = static_cast<std::int16_t>(20 * sequences[i][s].ticks);
    }
  }
  const QTemporaryDir folder;
  QFile file(folder.filePath("sequences.dat"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(QByteArray::fromStdString(FormatBufferFile(*data)));
  file.close();
  files.answer = file.fileName();
  box.Expect("Load", "Data Loaded!");
  Trigger("LoadBuffer");
  ASSERT_EQ(Table(), sequences);
}

FlashSequences FlashTest::Table() const {
  FlashSequences sequences;
  for (std::size_t i = 0; i < sequences.size(); ++i) {
    const SequenceRecord& record = Data().SeqTable[i];
    for (std::size_t s = 0; s < static_cast<std::size_t>(Data().SeqSteps[i]); ++s) {
      EXPECT_EQ(record.Duration[s] % 20, 0);
      sequences[i].push_back({record.Position[s], record.Duration[s] / 20});
    }
  }
  return sequences;
}

void FlashTest::Trigger(const char* item) {
  hands->Find<QAction>(item).trigger();
}

void FlashTest::Unplug() {
  const QString device = QString::fromStdString(board.DevicePath());
  told_of_loss_ = false;
  ExpectMessage("The connection on Comm1 (" + device +
                    ") is lost: the adapter was pulled or the line hung up.\n\nYour sequences are "
                    "untouched. Choose a port to connect again.",
                [this] { told_of_loss_ = true; });
  board.Unplug();
}

void FlashTest::ConnectAgain() {
  ASSERT_TRUE(hands->WaitUntil([this] { return told_of_loss_; }));
  board.Replug();
  Connect();
}

int FlashTest::Bar() const {
  return hands->Find<QProgressBar>("ProgressBarFlash").value();
}

bool FlashTest::BarShown() const {
  return !hands->Find<QProgressBar>("ProgressBarFlash").isHidden();
}

void FlashTest::ExpectAtRest() {
  EXPECT_FALSE(Data().EraseMode);
  EXPECT_FALSE(Data().ProgramMode);
  EXPECT_FALSE(Data().ReadMode);
  EXPECT_FALSE(Data().AbortRequest);
  EXPECT_FALSE(Enabled("Command1"));
  EXPECT_FALSE(BarShown());
  for (const int steps : Data().SeqSteps) EXPECT_LE(steps, 256);
}

}  // namespace pelmora
