#include "platform/look/list_column.h"

#include <QPainter>
#include <QStringList>
#include <algorithm>

#include "platform/look/colours.h"
#include "platform/look/list_look.h"

namespace platform {
namespace {

// The fields of a line as they are drawn.
QStringList FieldsOf(const QModelIndex& line) {
  QStringList fields = line.data(Qt::DisplayRole).toString().split('\t');
  for (QString& field : fields) field = field.simplified();
  return fields;
}

// Where a number begins in its cell: the column's decimal separator stands at the same place in all
// lines.
int NumberLeft(const QFontMetrics& metrics, const QRect& cell, const QString& widest,
               const QString& number) {
  // What stands before the separator is the sign and the first digits.
  const auto width_before_point = [&metrics](const QString& text) {
    const auto end = std::ranges::find_if(text, [](QChar c) { return c != '-' && !c.isDigit(); });
    return metrics.horizontalAdvance(text.left(end - text.begin()));
  };
  const int point = cell.left() + (cell.width() - metrics.horizontalAdvance(widest)) / 2 +
                    width_before_point(widest);
  return std::max(cell.left(), point - width_before_point(number));
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
  if (option.state & QStyle::State_HasFocus) {
    painter->setPen(QPen(Blend(colours.text, colours.ground, 0.3), 1, Qt::DotLine));
    painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
  }

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
    QRect cell(option.rect.left() + column.left, option.rect.top(), column.width,
               option.rect.height());
    QFont font = option.font;
    font.setBold(column.strong);
    painter->setFont(font);
    const QFontMetrics metrics = painter->fontMetrics();
    const bool number = !column.widest_number.isEmpty();
    const bool repeated = number && above.value(static_cast<qsizetype>(i)) == field;
    if (number) cell.setLeft(NumberLeft(metrics, cell, column.widest_number, field));
    painter->setPen(column.strong ? colours.strong : repeated ? colours.repeated : colours.text);
    const Qt::Alignment side = number ? Qt::AlignLeft : column.alignment;
    painter->drawText(cell, static_cast<int>(side) | Qt::AlignVCenter | Qt::TextSingleLine,
                      metrics.elidedText(field, Qt::ElideRight, cell.width()));
  }
}

}  // namespace platform
