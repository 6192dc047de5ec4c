#include "board/board_window.h"

#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QRadioButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "board/flash_gauge.h"
#include "board/servo_view.h"
#include "board/window_look.h"

namespace simboard {
namespace {

constexpr qint64 kRefreshMilliseconds = 34;
constexpr int kServoColumns = 4;
constexpr QSize kSize(740, 560);  // with the program's window beside it no wider than 1600 pixels

const char kStyle[] = R"(
QLabel { color: %text; background: transparent; }
QLabel#caption { color: %quiet; }
QProgressBar { background: %track; border: none; border-radius: 2px; }
QProgressBar::chunk { background: %accent; border-radius: 2px; }
QRadioButton { color: %text; spacing: 12px; }
QRadioButton::indicator { width: 14px; height: 14px; border-radius: 8px; }
QRadioButton::indicator:unchecked { border: 1px solid %edge; background: %lamp; }
QRadioButton::indicator:checked { border: 1px solid %lit; background:
    qradialgradient(cx: 0.4, cy: 0.35, radius: 0.7, fx: 0.4, fy: 0.35, stop: 0 %card,
                    stop: 0.35 %lit); }
QFrame#flash { background: %card; border: 1px solid %edge; border-radius: 8px; }
QFrame#flash QProgressBar, QFrame#flash QProgressBar::chunk { border-radius: 4px; }
QLabel[holds] { border-radius: 5px; }
QLabel[holds="empty"] { background: %back; color: %quiet; }
QLabel[holds="held"] { background: %pale; }
QLabel[holds="playing"] { background: %accent; color: %card; }
QListWidget { background: %card; color: %text; border: 1px solid %edge; border-radius: 8px;
              padding: 6px 4px; outline: 0; }
QListWidget::item { padding: 3px 6px; border: none; }
QScrollBar:vertical { background: transparent; width: 8px; margin: 0; }
QScrollBar::handle:vertical { background: %lamp; border-radius: 4px; min-height: 24px; }
QScrollBar::add-line, QScrollBar::sub-line { height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
)";

QString StyleSheet() {
  QString style = QString::fromLatin1(kStyle);
  for (const auto& [name, colour] : {std::pair{"%text", look::kText},
                                     {"%quiet", look::kQuietText},
                                     {"%track", look::kTrack},
                                     {"%accent", look::kAccent},
                                     {"%card", look::kCard},
                                     {"%edge", look::kCardEdge},
                                     {"%lamp", look::kLampOff},
                                     {"%lit", look::kLampOn},
                                     {"%back", look::kBackground},
                                     {"%pale", look::kAccentPale}}) {
    style.replace(QLatin1String(name), colour.name());
  }
  return style;
}

}  // namespace

BoardWindow::BoardWindow(SimulatedBoard& board, QWidget* parent) : QWidget(parent), board_(board) {
  setWindowTitle(QStringLiteral("Simulated board"));
  setAccessibleName(QStringLiteral("Simulated board"));
  setFixedSize(kSize);
  QPalette colours = palette();
  colours.setColor(QPalette::Window, look::kBackground);
  setPalette(colours);
  setAutoFillBackground(true);
  setStyleSheet(StyleSheet());
  BuildParts();

  refresh_timer_.setSingleShot(true);
  connect(&refresh_timer_, &QTimer::timeout, this, &BoardWindow::Refresh);
  board_.SetChanged([this] {
    QMetaObject::invokeMethod(this, &BoardWindow::ScheduleRefresh, Qt::QueuedConnection);
  });
  Refresh();
}

BoardWindow::~BoardWindow() {
  board_.SetChanged({});
}

void BoardWindow::BuildParts() {
  pc_control_ = new QRadioButton(this);
  pc_control_->setAccessibleName(QStringLiteral("PC control"));
  pc_control_->setFont(look::Letters(14, QFont::Bold));
  pc_control_->setFixedSize(170, 30);
  pc_control_->setAutoExclusive(false);
  pc_control_->setEnabled(false);
  activity_ = new QLabel(this);
  activity_->setFont(look::Letters(14));
  activity_->setAccessibleName(QStringLiteral("Activity"));
  transfer_ = new QProgressBar(this);
  transfer_->setTextVisible(false);
  transfer_->setFixedHeight(4);
  transfer_->setAccessibleName(QStringLiteral("Transfer"));
  QSizePolicy keeps_its_place = transfer_->sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(true);
  transfer_->setSizePolicy(keeps_its_place);

  auto* doing = new QVBoxLayout;
  doing->setSpacing(2);
  doing->addStretch();
  // As much above the words as the bar takes below them, so that they stand level with the lamp.
  doing->addSpacing(6);
  doing->addWidget(activity_);
  doing->addWidget(transfer_);
  doing->addStretch();

  auto* servos = new QGridLayout;
  servos->setSpacing(8);
  for (std::size_t i = 0; i < servos_.size(); ++i) {
    const int channel = static_cast<int>(i);
    servos_[i] = new ServoView(channel, this);
    servos->addWidget(servos_[i], channel / kServoColumns, channel % kServoColumns);
  }

  auto* caption = new QLabel(QStringLiteral("Last commands"), this);
  caption->setObjectName(QStringLiteral("caption"));
  caption->setFont(look::Letters(13, QFont::Bold));
  commands_ = new QListWidget(this);
  commands_->setAccessibleName(QStringLiteral("Last commands"));
  commands_->setFont(look::Letters(13));
  commands_->setSelectionMode(QAbstractItemView::NoSelection);
  commands_->setWordWrap(true);
  commands_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  caption->setBuddy(commands_);

  gauge_ = new FlashGauge(this);
  gauge_->setFixedHeight(102);

  auto* whole = new QGridLayout(this);
  whole->setContentsMargins(14, 10, 14, 14);
  whole->setHorizontalSpacing(12);
  whole->setVerticalSpacing(8);
  auto* top = new QHBoxLayout;
  top->addWidget(pc_control_);
  top->addLayout(doing, 1);
  whole->addLayout(top, 0, 0);
  whole->addWidget(caption, 0, 1, Qt::AlignLeft | Qt::AlignVCenter);
  whole->addLayout(servos, 1, 0);
  whole->addWidget(commands_, 1, 1);
  whole->addWidget(gauge_, 2, 0, 1, 2);
  whole->setRowMinimumHeight(0, 36);
  whole->setRowStretch(1, 1);
  whole->setColumnStretch(0, 1);
  commands_->setFixedWidth(206);
}

void BoardWindow::ScheduleRefresh() {
  const qint64 since = since_refresh_.elapsed();
  if (since >= kRefreshMilliseconds) {
    Refresh();
  } else if (!refresh_timer_.isActive()) {
    refresh_timer_.start(static_cast<int>(kRefreshMilliseconds - since));
  }
}

void BoardWindow::Refresh() {
  since_refresh_.start();
  const State state = board_.Snapshot();
  for (std::size_t i = 0; i < servos_.size(); ++i) servos_[i]->Show(state.positions[i]);
  pc_control_->setChecked(state.pc_control);
  pc_control_->setText(state.pc_control ? QStringLiteral("PC control on")
                                        : QStringLiteral("PC control off"));
  QString activity = QString::fromStdString(state.activity);
  activity.replace(0, 1, activity.at(0).toUpper());
  activity_->setText(activity);
  ShowTransfer(state);
  gauge_->Show(state.flash_bytes, state.sequence_steps, state.playing_sequence);
  ShowCommands(state);
}

void BoardWindow::ShowTransfer(const State& state) {
  if (state.transfer_total > 0) {
    transfer_->setRange(0, state.transfer_total);
    transfer_->setValue(state.transfer_done);
  }
  transfer_->setVisible(state.transfer_total > 0);
}

void BoardWindow::ShowCommands(const State& state) {
  if (state.commands == shown_commands_) return;
  shown_commands_ = state.commands;
  // Somebody who has scrolled up wants to read, and keeps his place.
  QScrollBar* bar = commands_->verticalScrollBar();
  const bool follows = bar->value() == bar->maximum();
  const int place = bar->value();
  QStringList lines;
  for (const std::string& command : state.commands) lines << QString::fromStdString(command);
  commands_->clear();
  commands_->addItems(lines);
  if (follows) {
    commands_->scrollToBottom();
  } else {
    bar->setValue(place);
  }
}

}  // namespace simboard
