#include "platform/list_column.h"

#include <QPainter>
#include <QStringList>
#include <utility>

#include "platform/colours.h"

namespace platform {
namespace {

constexpr int kRowPadding = 4;  // pixels above and below a line together

}  // namespace

void ColumnDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
  const bool selected = (option.state & QStyle::State_Selected) != 0;
  const QPalette::ColorGroup group =
      (option.state & QStyle::State_Enabled) != 0 ? QPalette::Active : QPalette::Disabled;
  const QPalette& palette = option.palette;
  const QColor highlight = palette.color(group, QPalette::Highlight);
  if (selected) {
    const bool enabled = group == QPalette::Active;
    painter->fillRect(option.rect,
                      enabled ? highlight : Blend(highlight, palette.color(QPalette::Base), 0.5));
  } else if (option.features & QStyleOptionViewItem::Alternate) {
    painter->fillRect(option.rect, palette.color(group, QPalette::AlternateBase));
  }
  if (option.state & QStyle::State_HasFocus) {
    const QColor base = palette.color(QPalette::Base);
    painter->setPen(QPen(selected ? Blend(highlight, base, 0.6) : highlight, 1, Qt::DotLine));
    painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
  }
  painter->setPen(palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text));
  painter->setFont(option.font);

  const QString text = index.data(Qt::DisplayRole).toString();
  if (columns_.empty()) {
    painter->drawText(option.rect.adjusted(4, 0, -4, 0),
                      Qt::AlignVCenter | Qt::TextExpandTabs | Qt::TextSingleLine, text);
    return;
  }
  const QStringList fields = text.split('\t');
  for (std::size_t i = 0; i < columns_.size() && i < static_cast<std::size_t>(fields.size()); ++i) {
    const ListColumn& column = columns_[i];
    const QRect cell(option.rect.left() + column.left, option.rect.top(), column.width,
                     option.rect.height());
    painter->drawText(cell,
                      static_cast<int>(column.alignment) | Qt::AlignVCenter | Qt::TextSingleLine,
                      option.fontMetrics.elidedText(fields[static_cast<qsizetype>(i)],
                                                    Qt::ElideRight, column.width));
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
