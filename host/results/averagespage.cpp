#include "host/results/averagespage.h"

#include "blade/geometry/measureunit.h"
#include "host/results/averagesview.h"
#include "interface/lmxstack.h"

#include <QEvent>
#include <QLabel>
#include <QListWidget>
#include <QSplitter>
#include <QVBoxLayout>

namespace {

constexpr int sliceRole = Qt::UserRole;

} // namespace

AveragesPage::AveragesPage(QWidget* parent)
    : QWidget(parent)
    , view_(new AveragesView)
    , names_(new QListWidget)
    , note_(new QLabel)
{
    names_->setAccessibleName("Names of the shapes");
    QSplitter* splitter = new QSplitter;
    splitter->addWidget(view_);
    splitter->addWidget(names_);
    splitter->setStretchFactor(0, 1);
    splitter->setSizes({600, 200});
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->addWidget(splitter, 1);
    layout->addWidget(note_);
    connect(names_, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
        view_->setShown(names_->row(item), item->checkState() == Qt::Checked);
    });
    connect(names_, &QListWidget::currentRowChanged, view_, &AveragesView::setMarked);
    connect(names_, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        const int slice = item->data(sliceRole).toInt();
        if (slice >= 0) {
            emit sliceChosen(slice);
        }
    });
}

void AveragesPage::show(const std::vector<AverageShape>& shapes, const QString& unit)
{
    const QSignalBlocker blocker(names_);
    view_->setShapes(shapes, unit);
    names_->clear();
    const std::vector<QString> names = shortNames(shapes);
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        QListWidgetItem* item = new QListWidgetItem(names[i], names_);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
        item->setData(sliceRole, shapes[i].slice);
        item->setToolTip(shapes[i].name);
    }
    colorNames();
}

void AveragesPage::colorNames()
{
    const QSignalBlocker blocker(names_);
    for (int i = 0; i < names_->count(); ++i) {
        QPixmap swatch(14, 14);
        swatch.fill(view_->color(i));
        names_->item(i)->setIcon(swatch);
    }
}

void AveragesPage::showStack(LMXStack& stack, bool open)
{
    std::vector<AverageShape> shapes = shapesOfStack(stack);
    for (AverageShape& shape : shapes) {
        shape.slice = open ? shape.slice : -1;
    }
    show(shapes, QString::fromStdString(lengthUnitOf(stack)));
    note_->setText(QString("%1 shapes of the stack %2")
                       .arg(shapes.size())
                       .arg(QString::fromStdString(stack.getName())));
}

void AveragesPage::showFiles(const std::vector<std::string>& filenames)
{
    show(shapesOfFiles(filenames), QString());
    note_->setText(QString("%1 curve files").arg(filenames.size()));
}

void AveragesPage::clear()
{
    show({}, QString());
    note_->clear();
}

void AveragesPage::savePicture(const QString& filename) const
{
    view_->save(filename);
}

void AveragesPage::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange) {
        colorNames();
    }
    QWidget::changeEvent(event);
}
