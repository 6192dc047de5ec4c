#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <stdexcept>

namespace rig {

// The whole content of a file. Throws std::runtime_error when it can't be read.
inline QByteArray ReadFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("no file " + path.toStdString());
  return file.readAll();
}

// Makes a file of this content. Throws as above.
inline void WriteFile(const QString& path, const QByteArray& content) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
    throw std::runtime_error("can't write " + path.toStdString());
  }
}

}  // namespace rig
