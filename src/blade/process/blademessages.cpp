#include "blade/process/blademessages.h"

#include <QApplication>
#include <QMessageBox>

#include <iostream>

namespace {

BladeMessages::Handler& currentHandler()
{
    static BladeMessages::Handler handler;
    return handler;
}

void showInBox(const std::string& text)
{
    QMessageBox box;
    box.setText(QString::fromStdString(text));
    box.exec();
}

} // namespace

void BladeMessages::show(const std::string& text)
{
    if (currentHandler()) {
        currentHandler()(text);
    } else if (qobject_cast<QApplication*>(QCoreApplication::instance())) {
        showInBox(text);
    } else {
        std::cerr << text << std::endl;
    }
}

BladeMessages::Handler BladeMessages::setHandler(Handler handler)
{
    currentHandler().swap(handler);
    return handler;
}
