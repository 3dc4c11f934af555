#include "host/results/plotpage.h"

#include "host/results/plotview.h"
#include "host/results/tablecolumn.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>

namespace {

/// The columns whose values make groups, in the order in which they are offered.
const char* const groupColumns[] = {"Slice_Name", "Tooth_Position", "Side"};

void fill(QComboBox& box, const QStringList& names, const QString& chosen)
{
    const QSignalBlocker blocker(box);
    box.clear();
    box.addItems(names);
    box.setCurrentText(chosen);
    box.view()->setMinimumWidth(box.view()->sizeHintForColumn(0) + 30);
}

QComboBox* addBox(QHBoxLayout& row, const QString& label)
{
    QComboBox* box = new QComboBox;
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(6);
    QLabel* text = new QLabel(label);
    text->setBuddy(box);
    row.addWidget(text);
    row.addWidget(box, 1);
    return box;
}

} // namespace

PlotPage::PlotPage(QWidget* parent)
    : QWidget(parent)
    , view_(new PlotView)
    , note_(new QLabel)
{
    QHBoxLayout* choices = new QHBoxLayout;
    table_ = addBox(*choices, "&Table:");
    y_ = addBox(*choices, "&Vertical:");
    x_ = addBox(*choices, "&Horizontal:");
    group_ = addBox(*choices, "C&olour:");
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->addLayout(choices);
    layout->addWidget(view_, 1);
    layout->addWidget(note_);
    table_->addItems({"Leaves", "Teeth"});
    const auto chosen = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(table_, chosen, this, &PlotPage::listColumns);
    for (QComboBox* box : {x_, y_, group_}) {
        connect(box, chosen, this, &PlotPage::choose);
    }
    connect(view_, &PlotView::rowChosen, this, [this](int row) { emit rowChosen(kind(), row); });
}

MeasureTables::Kind PlotPage::kind() const
{
    return table_->currentIndex() == 0 ? MeasureTables::Kind::Leaves : MeasureTables::Kind::Teeth;
}

void PlotPage::setTables(const MeasureTables& tables)
{
    tables_ = &tables;
    listColumns();
}

void PlotPage::listColumns()
{
    if (!tables_) {
        return;
    }
    const DataSet& table = tables_->table(kind());
    QStringList numbers;
    for (const TableColumn& column : tableColumns(table)) {
        if (column.numeric) {
            numbers.append(column.name);
        }
    }
    QStringList groups("Nothing");
    for (const char* name : groupColumns) {
        if (table.column(name) >= 0) {
            groups.append(name);
        }
    }
    fill(*x_, numbers, choice().x);
    fill(*y_, numbers, choice().y);
    fill(*group_, groups, choice().group);
    plot();
}

void PlotPage::choose()
{
    choice() = {x_->currentText(), y_->currentText(), group_->currentText()};
    plot();
}

void PlotPage::plot()
{
    const std::vector<TableColumn> columns = tableColumns(tables_->table(kind()));
    PlotData plotted;
    std::vector<QString> names;
    if (!x_->currentText().isEmpty()) {
        const QString group = group_->currentIndex() > 0 ? group_->currentText() : QString();
        plotted = PlotData::of(columns, x_->currentText(), y_->currentText(), group,
                               tables_->lengthUnit());
    }
    for (const TableColumn& column : columns) {
        if (column.name == "Slice_Name") {
            names = column.texts;
        }
    }
    view_->markRow(-1);
    view_->setData(plotted, names);
    note_->setText(plotted.leftOut == 0
                       ? QString("%1 points").arg(plotted.points.size())
                       : QString("%1 points; %2 rows lack a number in one of the two columns")
                             .arg(plotted.points.size())
                             .arg(plotted.leftOut));
}

void PlotPage::markRow(MeasureTables::Kind shown, int row)
{
    view_->markRow(shown == kind() ? row : -1);
}

void PlotPage::savePicture(const QString& filename) const
{
    view_->save(filename);
}
