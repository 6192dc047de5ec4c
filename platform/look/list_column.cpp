#include "platform/look/list_column.h"

#include <QPainter>
#include <QStringList>
#include <algorithm>

#include "platform/look/colours.h"
#include "platform/look/list_look.h"

namespace platform {
namespace {

constexpr int kRowPadding = 4;  // pixels above and below a line together

void DrawFocus(QPainter& painter, const QRect& row, const LineColours& colours) {
  painter.setPen(QPen(Blend(colours.text, colours.ground, 0.3), 1, Qt::DotLine));
  painter.drawRect(row.adjusted(1, 1, -2, -2));
}

// The fields of a line as they are drawn.
QStringList FieldsOf(const QModelIndex& line) {
  QStringList fields = line.data(Qt::DisplayRole).toString().split('\t');
  for (QString& field : fields) field = field.simplified();
  return fields;
}

// How much of the text stands before the decimal separator: its sign and first digits.
qsizetype LengthBeforePoint(const QString& number) {
  qsizetype length = 0;
  while (length < number.size() && (number[length] == '-' || number[length].isDigit())) ++length;
  return length;
}

// The column's decimal separator stands at the same place in all lines.
void DrawNumber(QPainter& painter, const QRect& cell, const ListColumn& column,
                const QString& number) {
  const QFontMetrics metrics = painter.fontMetrics();
  const auto width_before_point = [&metrics](const QString& text) {
    return metrics.horizontalAdvance(text.left(LengthBeforePoint(text)));
  };
  const QString& widest = column.widest_number;
  const int point = cell.left() + (column.width - metrics.horizontalAdvance(widest)) / 2 +
                    width_before_point(widest);
  const int left = std::max(cell.left(), point - width_before_point(number));
  const int room = cell.left() + column.width - left;
  painter.drawText(QRect(left, cell.top(), room, cell.height()),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   metrics.elidedText(number, Qt::ElideRight, room));
}

void DrawField(QPainter& painter, const QRect& cell, const ListColumn& column,
               const QString& field) {
  painter.drawText(cell, static_cast<int>(column.alignment) | Qt::AlignVCenter | Qt::TextSingleLine,
                   painter.fontMetrics().elidedText(field, Qt::ElideRight, column.width));
}

}  // namespace

void ColumnDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
  const LineState state = {.odd = index.row() % 2 != 0,
                           .selected = option.state.testFlag(QStyle::State_Selected),
                           .halted = halted_,
                           .dragged = index.row() == dragged_,
                           .enabled = option.state.testFlag(QStyle::State_Enabled)};
  const LineColours colours = ColoursOf(state, option.palette);
  painter->fillRect(option.rect, colours.ground);
  if (option.state & QStyle::State_HasFocus) DrawFocus(*painter, option.rect, colours);

  painter->setFont(option.font);
  painter->setPen(colours.number);
  painter->drawText(
      QRect(option.rect.left(), option.rect.top(), number_edge_, option.rect.height()),
      Qt::AlignRight | Qt::AlignVCenter, QString::number(index.row()));
  const QStringList fields = FieldsOf(index);
  const QStringList above = FieldsOf(index.siblingAtRow(index.row() - 1));
  const std::size_t drawn = std::min(columns_.size(), static_cast<std::size_t>(fields.size()));
  for (std::size_t i = 0; i < drawn; ++i) {
    const ListColumn& column = columns_[i];
    const QString& field = fields[static_cast<qsizetype>(i)];
    const QRect cell(option.rect.left() + column.left, option.rect.top(), column.width,
                     option.rect.height());
    QFont font = option.font;
    font.setBold(column.strong);
    painter->setFont(font);
    painter->setPen(column.strong ? colours.strong : colours.text);
    if (column.widest_number.isEmpty()) {
      DrawField(*painter, cell, column, field);
      continue;
    }
    if (above.value(static_cast<qsizetype>(i)) == field) painter->setPen(colours.repeated);
    DrawNumber(*painter, cell, column, field);
  }
}

QSize ColumnDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
  return {0, row_height_};
}

int ColumnDelegate::LeastHeight(const QFontMetrics& font) {
  return font.height() + kRowPadding;
}

}  // namespace platform
