#include "host/document/pixelsizedialog.h"

#include "interface/lmxstack.h"
#include "interface/stackbuilder.h"
#include "stack/stackslice.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include <cmath>

namespace {

enum Way { KeepWay, TypeWay, BarWay };

constexpr double micrometresPerInch = 25400.0;

/// How the size of a pixel is typed.
enum Measure { MicrometresPerPixel, MillimetresPerPixel, PixelsPerInch };

QDoubleSpinBox* makeBox(double largest, double value)
{
    auto* box = new QDoubleSpinBox;
    box->setDecimals(4);
    box->setRange(0.0, largest);
    box->setValue(value);
    box->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    return box;
}

double inMicrometres(double value, Measure measure)
{
    switch (measure) {
    case MillimetresPerPixel:
        return value * 1000.0;
    case PixelsPerInch:
        return micrometresPerInch / value;
    default:
        return value;
    }
}

int slicesWithSize(const LMXStack& stack)
{
    int count = 0;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        count += StackBuilder::hasPixelSize(stack.getSlice(i)) ? 1 : 0;
    }
    return count;
}

} // namespace

PixelSizeDialog::PixelSizeDialog(LMXStack& stack, QWidget* parent)
    : QDialog(parent)
    , stack_(stack)
    , ways_(new QButtonGroup(this))
    , typed_(makeBox(1e6, 10.0))
    , measure_(new QComboBox)
    , barLength_(makeBox(1e6, 10.0))
    , barUnit_(new QComboBox)
    , drawn_(new QLabel)
    , result_(new QLabel)
    , all_(new QCheckBox("Also for photographs that state their own"))
{
    setWindowTitle("Pixel size");
    measure_->addItems({"µm per pixel", "mm per pixel", "pixels per inch"});
    barUnit_->addItem("mm", 1000.0);
    barUnit_->addItem("cm", 10000.0);
    barUnit_->addItem("µm", 1.0);
    layOut();
    const int sized = slicesWithSize(stack_);
    all_->setVisible(sized > 0);
    all_->setChecked(sized == stack_.getNumSlices());
    ways_->button(sized == stack_.getNumSlices() ? KeepWay : TypeWay)->setChecked(true);
    connect(ways_, &QButtonGroup::idToggled, this, [this](int way, bool on) {
        if (way == BarWay) {
            emit measureWanted(on);
        }
        refresh();
    });
    for (QDoubleSpinBox* box : {typed_, barLength_}) {
        connect(box, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
                &PixelSizeDialog::refresh);
    }
    for (QComboBox* box : {measure_, barUnit_}) {
        connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this,
                &PixelSizeDialog::refresh);
    }
    connect(this, &QDialog::finished, this, [this] { emit measureWanted(false); });
    refresh();
}

void PixelSizeDialog::layOut()
{
    const int slices = stack_.getNumSlices();
    const int sized = slicesWithSize(stack_);
    auto* keep = new QRadioButton(
        sized == 0 ? QString("&Leave it open: lengths are in pixels")
                   : QString("&As the files state it (%1 of %2 do)").arg(sized).arg(slices));
    auto* type = new QRadioButton("&Type it:");
    auto* bar = new QRadioButton("&Measure a scale bar of");
    ways_->addButton(keep, KeepWay);
    ways_->addButton(type, TypeWay);
    ways_->addButton(bar, BarWay);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    ok_ = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    drawn_->setWordWrap(true);
    auto* grid = new QGridLayout(this);
    grid->addWidget(keep, 0, 0, 1, 3);
    grid->addWidget(type, 1, 0);
    grid->addWidget(typed_, 1, 1);
    grid->addWidget(measure_, 1, 2);
    grid->addWidget(bar, 2, 0);
    grid->addWidget(barLength_, 2, 1);
    grid->addWidget(barUnit_, 2, 2);
    grid->addWidget(drawn_, 3, 1, 1, 2);
    grid->addWidget(all_, 4, 0, 1, 3);
    grid->addWidget(result_, 5, 0, 1, 3);
    grid->addWidget(buttons, 6, 0, 1, 3);
    grid->setRowMinimumHeight(3, drawn_->fontMetrics().lineSpacing());
    grid->setSizeConstraint(QLayout::SetFixedSize);
}

void PixelSizeDialog::setBarLength(double pixels)
{
    if (pixels > 0.0) {
        barPixels_ = pixels;
        ways_->button(BarWay)->setChecked(true);
        refresh();
    }
}

std::optional<float> PixelSizeDialog::pixelWidth() const
{
    double micrometres = 0.0;
    if (ways_->checkedId() == TypeWay && typed_->value() > 0.0) {
        micrometres =
            inMicrometres(typed_->value(), static_cast<Measure>(measure_->currentIndex()));
    } else if (ways_->checkedId() == BarWay && barPixels_ > 0.0) {
        micrometres = barLength_->value() * barUnit_->currentData().toDouble() / barPixels_;
    }
    constexpr int micrometre = -6;
    const double width =
        micrometres * std::pow(10.0, micrometre - stack_.getLengthUnit().getScale());
    const auto asHeld = static_cast<float>(width);
    return asHeld > 0.0F && std::isfinite(asHeld) ? std::optional<float>(asHeld) : std::nullopt;
}

void PixelSizeDialog::refresh()
{
    const int way = ways_->checkedId();
    typed_->setEnabled(way == TypeWay);
    measure_->setEnabled(way == TypeWay);
    barLength_->setEnabled(way == BarWay);
    barUnit_->setEnabled(way == BarWay);
    all_->setEnabled(way != KeepWay);
    drawn_->setText(way != BarWay ? QString()
                    : barPixels_ > 0.0
                        ? QString("The line is %1 pixels long").arg(barPixels_, 0, 'f', 1)
                        : QString("Draw a line over the bar on the picture"));
    const std::optional<float> width = pixelWidth();
    ok_->setEnabled(way == KeepWay || width);
    result_->setText(width ? QString("A pixel is %1 %2 wide")
                                 .arg(double(*width), 0, 'g', 6)
                                 .arg(QString::fromStdString(stack_.getLengthUnit().symbol()))
                           : QString(" "));
}

void PixelSizeDialog::accept()
{
    if (const std::optional<float> width = pixelWidth()) {
        const bool forAll = all_->isChecked();
        for (int i = 0; i < stack_.getNumSlices(); ++i) {
            StackSlice& slice = stack_.getSlice(i);
            if (forAll || !StackBuilder::hasPixelSize(slice)) {
                StackBuilder::setPixelWidth(slice, *width);
                LMXSliceImageCalibrationEvent event(slice);
                stack_.notifyEvent(event);
            }
        }
    }
    QDialog::accept();
}
