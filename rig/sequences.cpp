#include "rig/sequences.h"

#include <algorithm>
#include <random>

namespace rig {
namespace {

constexpr std::size_t kStepBytes = 14;
constexpr int kTick = 20;  // ms

Step RandomStep(std::mt19937& random, int ticks) {
  Step step{};
  for (auto& position : step.positions) position = static_cast<std::uint8_t>(random());
  step.ticks = ticks;
  return step;
}

}  // namespace

Bytes HeaderOf(const Sequences& sequences) {
  Bytes header;
  PutWord(header, StepDataOf(sequences).size());
  std::size_t offset = 0;
  for (const auto& sequence : sequences) {
    PutWord(header, sequence.size());
    PutWord(header, sequence.empty() ? 0 : offset);
    offset += kStepBytes * sequence.size();
  }
  return header;
}

Bytes StepDataOf(const Sequences& sequences) {
  Bytes bytes;
  for (const auto& sequence : sequences) {
    for (const Step& step : sequence) {
      bytes.insert(bytes.end(), step.positions.begin(), step.positions.end());
      PutWord(bytes, static_cast<std::size_t>(step.ticks));
    }
  }
  return bytes;
}

std::string FileOf(const Sequences& sequences, const std::string& end) {
  std::string text = "Index" + end;
  for (const auto& sequence : sequences) text += ' ' + std::to_string(sequence.size()) + ' ' + end;
  for (std::size_t i = 0; i < sequences.size(); ++i) {
    text += "Sequence " + std::to_string(i) + end;
    for (const Step& step : sequences[i]) {
      for (const int position : step.positions) text += std::to_string(position) + '\t';
      text += std::to_string(kTick * step.ticks) + '\t' + end;
    }
  }
  return text;
}

Sequences ExampleSequences() {
  Sequences sequences;
  Step step{};
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

Bytes ExampleImage() {
  return Hex(
      "00 2A  00 02 00 00  00 00 00 00  00 00 00 00  00 01 00 1C "
      "00 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00 "
      "00 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00 "
      "80 80 80 80 80 80 80 80 80 80 80 80  00 05 "
      "FF 80 80 80 80 80 80 80 80 80 80 80  00 32 "
      "00 00 00 00 00 00 00 00 00 00 00 00  01 00");
}

std::string ExampleFile(const std::string& end) {
  const std::string text =
      "Index\n 2 \n 0 \n 0 \n 1 \n 0 \n 0 \n 0 \n 0 \n 0 \n 0 \n 0 \n 0 \n 0 \n 0 \n 0 \n 0 \n"
      "Sequence 0\n"
      "128\t128\t128\t128\t128\t128\t128\t128\t128\t128\t128\t128\t100\t\n"
      "255\t128\t128\t128\t128\t128\t128\t128\t128\t128\t128\t128\t1000\t\n"
      "Sequence 1\nSequence 2\nSequence 3\n"
      "0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t5120\t\n"
      "Sequence 4\nSequence 5\nSequence 6\nSequence 7\nSequence 8\nSequence 9\n"
      "Sequence 10\nSequence 11\nSequence 12\nSequence 13\nSequence 14\nSequence 15\n";
  std::string lines;
  for (const char letter : text) letter == '\n' ? lines += end : lines += letter;
  return lines;
}

Sequences RandomSequences(unsigned seed, int steps) {
  std::mt19937 random(seed);
  Sequences sequences;
  while (steps > 0) {
    auto& sequence = sequences[random() % sequences.size()];
    if (sequence.size() == kMostSteps) continue;
    Step step = RandomStep(random, 0);
    step.ticks = static_cast<int>(1 + random() % 1638);
    sequence.push_back(step);
    --steps;
  }
  return sequences;
}

Sequences FilledSequences(unsigned seed, int steps, int ticks) {
  std::mt19937 random(seed);
  Sequences sequences;
  for (auto& sequence : sequences) {
    for (int count = std::min(steps, kMostSteps); count > 0; --count, --steps) {
      sequence.push_back(RandomStep(random, ticks));
    }
  }
  return sequences;
}

}  // namespace rig
