#include "ui/widgets/LeadingSymbolLayout.h"

#include "ui/Style.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace dorvik {

LeadingSymbolLayout layOutWithLeadingSymbol(QWidget* owner, QWidget* symbol, int margin,
                                            int spacing) {
    auto* column = new QVBoxLayout;
    column->setSpacing(Style::smallGap);
    auto* row = new QHBoxLayout(owner);
    row->setContentsMargins(margin, margin, margin, margin);
    row->setSpacing(spacing);
    row->addWidget(symbol, 0, Qt::AlignTop);
    row->addLayout(column, 1);
    return {row, column};
}

} // namespace dorvik
