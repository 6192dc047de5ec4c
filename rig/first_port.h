#pragma once

#include <QString>
#include <functional>
#include <utility>

#include "platform/serial/port_directory.h"

namespace rig {

// Ports for a test or the demo: entry 1 is the device that `device` names at that moment; the
// other entries are those of `others`, which may be null: then they are empty.
class FirstPort : public platform::PortDirectory {
 public:
  explicit FirstPort(std::function<QString()> device,
                     const platform::PortDirectory* others = nullptr)
      : device_(std::move(device)), others_(others) {}

  QString DeviceFor(int number) const override {
    if (number == 1) return device_();
    return others_ ? others_->DeviceFor(number) : QString();
  }

 private:
  const std::function<QString()> device_;
  const platform::PortDirectory* const others_;
};

}  // namespace rig
