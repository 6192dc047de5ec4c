#include "platform/look/list_column.h"

#include <QPainter>
#include <QStringList>
#include <algorithm>
#include <utility>

#include "platform/look/colours.h"
#include "platform/look/list_look.h"

namespace platform {
namespace {

constexpr int kRowPadding = 4;  // pixels above and below a line together

void DrawFocus(QPainter& painter, const QRect& row, const LineColours& colours) {
  painter.setPen(QPen(Blend(colours.text, colours.ground, 0.3), 1, Qt::DotLine));
  painter.drawRect(row.adjusted(1, 1, -2, -2));
}

void DrawCell(QPainter& painter, const QStyleOptionViewItem& row, const ListColumn& column,
              const QString& field, const LineColours& colours) {
  QFont font = row.font;
  font.setBold(column.strong);
  painter.setFont(font);
  painter.setPen(column.strong ? colours.strong : colours.text);
  const QRect cell(row.rect.left() + column.left, row.rect.top(), column.width, row.rect.height());
  painter.drawText(cell, static_cast<int>(column.alignment) | Qt::AlignVCenter | Qt::TextSingleLine,
                   QFontMetrics(font).elidedText(field.simplified(), Qt::ElideRight, column.width));
}

}  // namespace

void ColumnDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
  LineState state;
  state.odd = index.row() % 2 != 0;
  state.selected = (option.state & QStyle::State_Selected) != 0;
  state.enabled = (option.state & QStyle::State_Enabled) != 0;
  state.halted = halted_;
  state.dragged = index.row() == dragged_;
  const LineColours colours = ColoursOf(state, option.palette);
  painter->fillRect(option.rect, colours.ground);
  if (option.state & QStyle::State_HasFocus) DrawFocus(*painter, option.rect, colours);

  painter->setFont(option.font);
  if (number_edge_ >= 0) {
    painter->setPen(colours.number);
    painter->drawText(
        QRect(option.rect.left(), option.rect.top(), number_edge_, option.rect.height()),
        Qt::AlignRight | Qt::AlignVCenter, QString::number(index.row()));
  }
  const QString text = index.data(Qt::DisplayRole).toString();
  if (columns_.empty()) {
    painter->setPen(colours.text);
    painter->drawText(option.rect.adjusted(4, 0, -4, 0),
                      Qt::AlignVCenter | Qt::TextExpandTabs | Qt::TextSingleLine, text);
    return;
  }
  const QStringList fields = text.split('\t');
  const std::size_t drawn = std::min(columns_.size(), static_cast<std::size_t>(fields.size()));
  for (std::size_t i = 0; i < drawn; ++i) {
    DrawCell(*painter, option, columns_[i], fields[static_cast<qsizetype>(i)], colours);
  }
}

QSize ColumnDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
  return {0, row_height_};
}

int ColumnDelegate::LeastHeight(const QFontMetrics& font) {
  return font.height() + kRowPadding;
}

bool ColumnDelegate::SetRowHeight(int height) {
  return std::exchange(row_height_, height) != height;
}

}  // namespace platform
