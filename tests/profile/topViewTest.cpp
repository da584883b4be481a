#include "profileSupport.h"

using namespace testing_support;

namespace {

TEST(CloudTopView, TakesPointsAtOrAboveTheLevel) {
    KxPointCloud<KxPointXYZ> cloud;
    cloud.points = {{1, 0, 10}, {2, -0.1f, 20}, {3, kNaN, 30}, {4, 5, kNaN}};
    KxProfile profile = profileOf({{1, 2}}); // the old range stays
    EXPECT_EQ(profile.makeCloudTopView(cloud, 0.0f), 2);
    expectPoints(profile, {{1, 10}, {4, kNaN}});
    EXPECT_EQ(profile.makeCloudTopView(cloud, kNaN), 4);
    expectPoints(profile, {{1, 10}, {2, 20}, {3, 30}, {4, kNaN}});
}

} // namespace
