#pragma once

#include "host/document/documentfiles.h"
#include "host/document/lmxrootmediator.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "stack/stackwriter.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "support/userfolders.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

/// A stack file "leaf.sdf" of one photograph with a contour, on disk.
class DocumentTest : public ::testing::Test
{
protected:
    DocumentTest()
    {
        clearUserFolders();
        ImageWriter().write(leaf::toImage(leaf::photograph(outline, 860, 540, 200.0f, 30.0f)),
                            folder.file("leaf.tif"), false);
        mediator.open(DocumentFiles().open({folder.file("leaf.tif")}));
        leaf::addItem(stack(), "Contour", PRIMITIVE_POLYGON, 0, outline.points);
        EXPECT_TRUE(stack().write(path()));
    }

    LMXStack& stack() { return *mediator.stack(); }

    std::string path() const { return folder.file("leaf.sdf"); }

    QString document() const { return QString::fromStdString(path()); }

    /// An edit, told to all.
    void moveContour(int dx)
    {
        ModelItem& contour = *leaf::findItem(stack(), "Contour", 0);
        contour.translate(dx, 0);
        LMXModelItemVertexEvent event(contour);
        LMXEventServer::notifyEvent(event);
    }

    std::string models()
    {
        std::ostringstream text;
        StackWriter().writeModels(stack(), text);
        return text.str();
    }

    leaf::Outline outline = leaf::draw(leaf::Shape());
    TemporaryFolder folder;
    LMXRootMediator mediator;
};
