// Point arrays and the point-set statics of CNuGeometry: the array's own refusals, insertion,
// duplicates, the degeneracy tests, frame changes, extreme edges, bounds, projections.
#include <vector>

#include "geometry_test_support.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/scalar.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace {

using test::kGeometry;
using test::Points;
using test::PointsNear;
using test::Xs;
using Op = CNuOperationException;
using XList = std::vector<double>;

TEST(PointArray, RefusesBadIndicesSizesAndEmptyMeasuresAndInsertsItsOwnElements) {
    CNuPointArray a = Points({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}});
    CNuPointArray empty;
    test::ExpectFailures<Op>({
        {[&] { empty[0]; }, 108, "element operator[]", "CNuPointArray"},
        {[&] { a.Append(a); }, 118, "Append operation", "CNuPointArray::Append()"},
        {[&] { empty.Insert(CNuPoint(), 0); }, 103, "element operator[]", "CNuIntArray"},
        {[&] { empty.MaxEdge(nullptr, nullptr); }, 108, "MaxEdge operation",
         "CNuPointArray::MaxEdge(int* m, int* n) const"},
    });
    test::ExpectNuFailure<CNuConstructionException>([] { CNuPointArray b(-1, 4); }, 2, "Size",
                                                    "CNuPointArray");
    EXPECT_EQ(Xs(a.SubArray(test::Ints({1, 0, 1}))), (XList{0, 2}));
    a.Insert(CNuPoint(9, 0, 0), 1);
    a.Insert(a[3], 0);  // an element of the array itself, while the array grows
    EXPECT_EQ(Xs(a), (XList{2, 0, 9, 1, 2}));
}

TEST(PointArray, DuplicatesAreJudgedAgainstSurvivorsOnly) {
    // Not transitive: 0.6 is close to 0 and dropped; 1.2 is close to 0.6 but not to 0, and kept.
    CNuPointArray chain = Points({{0, 0, 0}, {0.6, 0, 0}, {1.2, 0, 0}, {1.7, 0, 0}});
    CNuPointArray run(chain);
    chain.RemoveDuplicate(1.0);
    EXPECT_EQ(Xs(chain), (XList{0, 1.2}));
    run.Add(CNuPoint(0, 0, 0));
    run.RemoveAdjacentDuplicate(1.0);  // against the last kept point only
    EXPECT_EQ(Xs(run), (XList{0, 1.2, 0}));
    int nIndex = -7;
    EXPECT_EQ(run.IsIn(CNuPoint(3, 0, 0), nIndex, 0.5), eNuFalse);
    EXPECT_EQ(nIndex, -7);
    EXPECT_EQ(run.IsIn(CNuPoint(1, 0, 0), nIndex, 0.5), eNuTrue);
    EXPECT_EQ(nIndex, 1);
}

TEST(PointArray, FindsWitnessesOfBendsAndFlatnessAndComparesAsSets) {
    CNuIntArray indices;
    EXPECT_EQ(Points({{0, 0, 0}, {0, 0, 0}, {1, 1, 1}, {2, 2, 2}}).IsNoncollinear(&indices, 1e-9),
              eNuFalse);
    CNuPointArray bent = Points({{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {0, 0, 7}});
    EXPECT_EQ(bent.IsNoncollinear(nullptr, 1e-9), eNuTrue);
    ASSERT_EQ(bent.IsNoncoplanar(&indices, 1e-9), eNuTrue);
    EXPECT_EQ(test::Elements(indices), (std::vector<int>{0, 2, 4, 5}));
    bent.Truncate(5);
    EXPECT_EQ(bent.IsNoncoplanar(nullptr, 1e-9), eNuFalse);
    EXPECT_EQ(Points({{1, 1, 5.0}}).Is2D(100.0), eNuFalse) << "one point: only z exactly 0";
    EXPECT_EQ(Points({{1, 1, 5.0}, {2, 3, 5.0}}).Is2D(1e-9), eNuTrue);
    EXPECT_EQ(Points({{1, 1, 5.0}, {2, 3, 5.0}}).Is2D(0.0), eNuFalse) << "strict test";
    CNuPointArray a = Points({{0, 0, 0}, {1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(a.IsEqual(Points({{4, 5, 6}, {0, 0, 0}, {1, 2, 3}}), 1e-9), eNuTrue);
    EXPECT_TRUE(PointsNear(a.MeanPoint(), CNuPoint(5.0 / 3.0, 7.0 / 3.0, 3.0), test::kExact));
}

TEST(PointArray, MoveToIsRigidWhicheverAxesAreGiven) {
    test::Random rng;
    CNuPointArray original = test::RandomPoints(rng, 20);
    CNuVector axis = test::RandomDirection(rng);
    CNuVector unit(axis);
    CNuVector xAxis;
    unit.OrthonormalX(&xAxis);
    CNuPoint origin = test::RandomPoint(rng);
    CNuPointArray byAxis(original);
    byAxis.MoveTo(origin, axis);
    CNuPointArray stepwise(original);  // the origin, then the axis
    stepwise.MoveTo(origin);
    stepwise.MoveTo(axis * 2.0);
    CNuPointArray framed(original);
    framed.MoveTo(origin, xAxis * 4.0, axis);
    for (int i = 0; i < 20; ++i) {
        EXPECT_NEAR(byAxis[i].z(), (original[i] - origin).To3DVector() % unit, kGeometry);
        EXPECT_TRUE(PointsNear(stepwise[i], byAxis[i], kGeometry));
        EXPECT_TRUE(PointsNear(framed[i], byAxis[i], kGeometry));
    }
}

TEST(PointArray, ExtremeEdgesMatchABruteForceSearchFirstPairsWinningTiesAndBoundsEnclose) {
    int m = -1;
    int n = -1;
    EXPECT_EQ(Points({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}).MaxEdge(&m, &n), 0.0);
    EXPECT_EQ(m * 10 + n, 1) << "0.0 beats the start of -0.1";
    // A square: both diagonals are longest, all sides shortest; the first pair wins.
    CNuPointArray square = Points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
    square.MaxEdge(&m, &n);
    EXPECT_EQ(m * 10 + n, 2);
    square.MinEdge(&m, &n);
    EXPECT_EQ(m * 10 + n, 1);
    test::Random rng;
    CNuPointArray cloud = test::RandomPoints(rng, 40);
    double dMax = -1.0;
    double dMin = 1e300;
    for (int i = 0; i < 40; ++i) {
        for (int j = i + 1; j < 40; ++j) {
            dMax = std::fmax(dMax, cloud[i].DistanceTo(cloud[j]));
            dMin = std::fmin(dMin, cloud[i].DistanceTo(cloud[j]));
        }
    }
    EXPECT_EQ(cloud.MaxEdge(&m, &n), dMax);
    EXPECT_EQ(cloud[m].DistanceTo(cloud[n]), dMax);
    EXPECT_EQ(cloud.MinEdge(&m, &n), dMin);
    // The bounding sphere is the one about the box: the origin for no points at all.
    CNuPoint centre(7, 7, 7);
    double dRadius = -1.0;
    CNuPointArray().BoundingSphere(&dRadius, &centre);
    EXPECT_TRUE(PointsNear(centre, CNuPoint(), test::kExact)) << "radius " << dRadius;
    Points({{1, -2, 0}, {-3, 4, 2}, {0, 0, -6}}).BoundingSphere(&dRadius, &centre);
    EXPECT_TRUE(PointsNear(centre, CNuPoint(-1, 1, -2), test::kExact));
    EXPECT_EQ(dRadius, NuPythag(2.0, 3.0, 4.0));
}

TEST(PointSetStatics, CollinearityAndCoplanarityReportTheirPlanes) {
    CNuVector normal;
    EXPECT_EQ(CNuGeometry::AreCollinear(Points({{0, 0, 0}, {1, 1, 0}, {2, 2, 0}}), &normal, 1e-9),
              1);
    EXPECT_EQ(normal.Magnitude(), 0.0) << "the vector stays as it was when 1 is returned";
    CNuPointArray bend = Points({{0, 0, 0}, {2, 0, 0}, {0, 0, 0}, {0, 3, 0}});
    EXPECT_EQ(CNuGeometry::AreCollinear(bend, &normal, 1e-9), 0);
    EXPECT_EQ(normal[2], 1.0);
    CNuPlane plane(CNuPoint(9, 9, 9), CNuVector(1, 0, 0));
    EXPECT_EQ(CNuGeometry::AreCoplanar(Points({{0, 0, 0}, {1, 5, 0}, {0, 0, 7}}), &plane, 1e-9), 1);
    EXPECT_EQ(plane.GetPoint().x(), 9.0) << "fewer than four points leave the plane alone";
    CNuPointArray flat = Points({{0, 0, 1}, {1, 0, 1}, {0, 1, 1}, {3, 4, 1}, {-1, 2, 1}});
    EXPECT_EQ(CNuGeometry::AreCoplanar(flat, &plane, 1e-9), 1);
    EXPECT_EQ(plane.GetPoint().z(), 1.0);
    flat.Add(CNuPoint(0, 0, 1.1));
    EXPECT_EQ(CNuGeometry::AreCoplanar(flat, 1e-9), 0);
    EXPECT_EQ(CNuGeometry::AreCoplanar(flat, 0.2), 1);
    // Collinear: the plane normal to point 0 -> last point, or the z axis if they coincide.
    CNuPointArray line = Points({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    EXPECT_EQ(CNuGeometry::AreCoplanar(line, &plane, 1e-9), 1);
    EXPECT_EQ(plane.GetNormal()[0], 1.0);
    line.Add(CNuPoint(0, 0, 0));
    EXPECT_EQ(CNuGeometry::AreCoplanar(line, &plane, 1e-9), 1);
    EXPECT_EQ(plane.GetNormal()[2], 1.0);
}

TEST(PointSetStatics, NumberDistinctPointsAnswersWhetherEnoughExistByDistance) {
    CNuPointArray same = Points({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}});
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(same, 2, 1e-9), 0);
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(same, 1, 1e-9), 1);
    // (0.6, 0.6, 0) is 0.85 from the origin, though inside a box of 0.9.
    CNuPointArray pair = Points({{0, 0, 0}, {0.6, 0.6, 0}});
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(pair, 2, 0.8), 1);
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(pair, 2, 0.9), 0);
    CNuPointArray three = Points({{0, 0, 0}, {1, 0, 0}, {0.5, 0, 0}, {1, 0, 0}, {0, 2, 0}});
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(three, 3, 0.7), 1);
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(three, 4, 0.7), 0);
}

TEST(PointSetStatics, ProjectionAlongAnAxisKeepsTheDistanceAcrossIt) {
    test::Random rng;
    CNuPointArray cloud = test::RandomPoints(rng, 25);
    CNuVector axis = test::RandomDirection(rng);
    CNuPointArray flat = CNuGeometry::Projection2D(cloud, axis);
    ASSERT_EQ(flat.GetSize(), 25);
    axis.Normalise();
    for (int i = 0; i < 25; ++i) {
        double dAlong = cloud[i].To3DVector() % axis;
        double dLength = cloud[i].To3DVector().Magnitude();
        EXPECT_EQ(flat[i].z(), 0.0);
        EXPECT_NEAR(flat[i].To3DVector().Magnitude(),
                    std::sqrt(dLength * dLength - dAlong * dAlong), kGeometry);
    }
}

}  // namespace
}  // namespace numorix
