#include "shape/vertices/vertexclient.h"
#include "shape/vertices/vertexserver.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <stdexcept>

TEST(VertexServer, GrowsByWholeStepsAndKeepsVerticesWhereTheyAre)
{
    VertexServer<float> server(2, 5, 0, 0);
    EXPECT_EQ(server.getGrowth(), 5);
    const Vector<float>* first = server[0];
    *server[4] = vectorOf<float>({7, 8});
    for (const auto& [size, capacity] : {std::pair(5, 5), {6, 10}, {3, 10}, {11, 15}, {5, 15}}) {
        server.setSize(size);
        EXPECT_EQ(server.getCapacity(), capacity);
        EXPECT_EQ(server[0], first);
    }
    EXPECT_EQ(*server[4], vectorOf<float>({7, 8}));
    server.setCapacity(2);
    EXPECT_THROW(server.setCapacity(-1), std::length_error);
    EXPECT_THROW(server.setSize(-1), std::length_error);
    EXPECT_EQ(server.getSize(), 2);
    EXPECT_EQ(server.getCapacity(), 2);

    VertexServer<float> empty(2, 0, 0, 0);
    for (int size = 0; size < 5; ++size) {
        empty.setSize(size);
        EXPECT_EQ(empty.getCapacity(), size);
    }
}

TEST(VertexServer, CopiesAndAppendsByValue)
{
    VertexServer<int> server(1, 2, 4, 3);
    for (int i = 0; i < 4; ++i) {
        server[i]->fill(i);
    }
    server.ref();
    VertexServer<int> copy(server);
    EXPECT_EQ(copy.getRefs(), 0);
    EXPECT_EQ(copy.getGrowth(), 3);
    copy.setSize(4);
    copy[0]->fill(9);
    server.append(copy);
    const int expected[] = {0, 1, 9, 1, 2, 3};
    ASSERT_EQ(server.getSize(), 6);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ((*server[i])[0], expected[i]);
    }
    EXPECT_RAISES(ValueError, "void VertexServer<T>::append(const VertexServer&)",
                  "Cannot append server to itself", server.append(server));
    EXPECT_THROW(server.append(VertexServer<int>(2, 1, 0, 0)), ValueError);
    EXPECT_EQ(server.getSize(), 6);
}

TEST(VertexClient, SharesUntilItDetaches)
{
    VertexClient<double> first(1, 1, 0, 0);
    VertexServer<double>* own = first.getServer();
    first.detach();
    EXPECT_EQ(first.getServer(), own);
    {
        VertexClient<double> second(first);
        EXPECT_EQ(own->getRefs(), 2);
        second.getServer()->vertex(0)->fill(2);
        second.detach();
        EXPECT_EQ(own->getRefs(), 1);
        EXPECT_EQ(second.getServer()->getRefs(), 1);
        second.getServer()->vertex(0)->fill(3);
        EXPECT_EQ((*own->vertex(0))[0], 2);

        VertexClient<double> third;
        third = second;
        third = first;
        third = VertexClient<double>();
        EXPECT_EQ(own->getRefs(), 2);
    }
    EXPECT_EQ(own->getRefs(), 1);
}
