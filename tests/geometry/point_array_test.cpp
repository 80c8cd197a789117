// Point arrays and the point-set statics of CNuGeometry: storage contracts, duplicates, the
// degeneracy tests, frame changes, extreme edges, bounds, and projections.
#include <string>
#include <vector>

#include "geometry_test_support.h"
#include "numorix/foundation/double_array.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;
using test::kGeometry;
using test::PointsNear;
using Op = CNuOperationException;

CNuPointArray Points(std::initializer_list<CNuPoint> points, int nCapacity = 0) {
    CNuPointArray a(nCapacity);
    for (const CNuPoint& p : points)
        a.Add(p);
    return a;
}

CNuPointArray RandomPoints(test::Random& rng, int n) {
    CNuPointArray a(n);
    for (int i = 0; i < n; ++i)
        a.Add(test::RandomPoint(rng));
    return a;
}

// The exception keeps 49 characters of a location.
std::string Stored(const char* pszLocation) { return std::string(pszLocation).substr(0, 49); }

TEST(PointArrayStorage, FollowsTheGrowableArrayContract) {
    CNuPointArray a(3);
    EXPECT_EQ(a.GetSize(), 0);
    EXPECT_EQ(a.GetCapacity(), 3);
    ExpectNuFailure<Op>([&] { a[0]; }, 108, "element operator[]", "CNuPointArray");
    ExpectNuFailure<Op>([&] { a.First(); }, 108, "First operator[]", "CNuPointArray::First()");
    ExpectNuFailure<Op>([&] { a.Last(); }, 108, "Last operator[]", "CNuPointArray::Last()");
    ExpectNuFailure<CNuConstructionException>([] { CNuPointArray b(-1); }, 2, "size",
                                              "CNuPointArray");
    ExpectNuFailure<CNuConstructionException>([] { CNuPointArray b(-1, 4); }, 2, "Size",
                                              "CNuPointArray");
    ExpectNuFailure<CNuConstructionException>([] { CNuPointArray b(1, 0); }, 15, "nArrayExpandSize",
                                              "CNuPointArray");
    for (int i = 0; i < 4; ++i)
        a.Add(CNuPoint(i, 0.0, 0.0));
    EXPECT_EQ(a.GetCapacity(), 13) << "growth by the constant step";
    ExpectNuFailure<Op>([&] { a[4]; }, 103, "element operator[]", "CNuPointArray");
    ExpectNuFailure<Op>([&] { a.SetCapacity(13); }, 114, "SetSize operation",
                        "CNuPointArray::SetSize()");
    ExpectNuFailure<Op>([&] { a.Append(a); }, 118, "Append operation", "CNuPointArray::Append()");
    ExpectNuFailure<Op>([&] { a.SubArray(2, 1); }, 115, "SubArray operation",
                        "CNuPointArray::SubArray(i, j)");
    ExpectNuFailure<Op>([&] { a.Remove(9); }, 103, "Remove operation", "CNuPointArray::Remove()");
    a.Add(a[0]);  // an element of the array itself, while the array grows
    EXPECT_EQ(a.Last().x(), 0.0);

    CNuPointArray sub = a.SubArray(1, 2);
    EXPECT_EQ(sub.GetCapacity(), 2);
    EXPECT_EQ(sub[1].x(), 2.0);
    CNuIntArray mask;
    for (int m : {0, 1, 0, 1, 1})
        mask.Add(m);
    CNuPointArray masked = a.SubArray(mask);
    ASSERT_EQ(masked.GetSize(), 3);
    EXPECT_EQ(masked.GetCapacity(), 3);
    EXPECT_EQ(masked[1].x(), 3.0);
    mask.Add(1);
    ExpectNuFailure<Op>([&] { a.SubArray(mask); }, 105, "SubArray operation",
                        "CNuPointArray::SubArray(const CNuIntArray& ip)");

    a.Truncate(2);
    EXPECT_EQ(a.GetCapacity(), 2);
    CNuPointArray big(10);
    big = a;
    EXPECT_EQ(big.GetCapacity(), 10) << "assignment keeps a buffer that is large enough";
    big.Clear();
    EXPECT_EQ(big.GetSize(), 0);
    EXPECT_EQ(big.GetCapacity(), 10);

    CNuDoubleArray ys = Points({{1, 2, 3}, {4, 5, 6}}).GetDataY();
    ASSERT_EQ(ys.GetSize(), 2);
    EXPECT_EQ(ys[1], 5.0);
    EXPECT_EQ(Points({{1, 2, 3}}).GetDataZ()[0], 3.0);
    EXPECT_EQ(Points({{1, 2, 3}}).GetDataX()[0], 1.0);
}

TEST(PointArrayInsert, ShiftsTheTailAndRefusesTheEndWithAnIntegerArrayLocation) {
    CNuPointArray a = Points({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, 3);
    a.Insert(CNuPoint(9, 0, 0), 1);
    ASSERT_EQ(a.GetSize(), 4);
    EXPECT_EQ(a.GetCapacity(), 13);
    const double adExpected[] = {0, 9, 1, 2};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(a[i].x(), adExpected[i]) << "at " << i;
    a.Insert(a[3], 0);  // an element of the array itself
    EXPECT_EQ(a[0].x(), 2.0);
    ExpectNuFailure<Op>([&] { a.Insert(CNuPoint(), 5); }, 103, "element operator[]", "CNuIntArray");
    ExpectNuFailure<Op>([&] { a.Insert(CNuPoint(), -1); }, 103, nullptr, nullptr);
    CNuPointArray empty;
    ExpectNuFailure<Op>([&] { empty.Insert(CNuPoint(), 0); }, 103, "element operator[]",
                        "CNuIntArray");
}

TEST(PointArrayDuplicates, KeepFirstOccurrencesJudgedAgainstSurvivorsOnly) {
    CNuPoint a(0, 0, 0);
    CNuPointArray set = Points({a, {0.1, 0, 0}, {5, 5, 5}, {0, 0.1, 0.1}}, 8);
    set.RemoveDuplicate(0.5);
    ASSERT_EQ(set.GetSize(), 2);
    EXPECT_EQ(set.GetCapacity(), 8);
    EXPECT_TRUE(PointsNear(set[0], a, test::kExact));
    EXPECT_EQ(set[1].x(), 5.0);
    // The dropped points sit in the spare storage.
    EXPECT_EQ(set.GetData()[2].x(), 0.1);

    // Not transitive: 0.6 is close to 0 and dropped; 1.2 is close to 0.6 but not to 0, and kept.
    CNuPointArray chain = Points({{0, 0, 0}, {0.6, 0, 0}, {1.2, 0, 0}, {1.7, 0, 0}});
    chain.RemoveDuplicate(1.0);
    ASSERT_EQ(chain.GetSize(), 2);
    EXPECT_EQ(chain[1].x(), 1.2);

    // Adjacent duplicates compare with the last kept point only.
    CNuPointArray run = Points({{0, 0, 0}, {0.6, 0, 0}, {1.2, 0, 0}, {0, 0, 0}});
    run.RemoveAdjacentDuplicate(1.0);
    ASSERT_EQ(run.GetSize(), 3);
    EXPECT_EQ(run[1].x(), 1.2);
    EXPECT_EQ(run[2].x(), 0.0);

    int nIndex = -7;
    EXPECT_EQ(run.IsIn(CNuPoint(1.0, 0.0, 0.0), nIndex, 0.5), eNuTrue);
    EXPECT_EQ(nIndex, 1);
    EXPECT_EQ(run.IsIn(CNuPoint(3.0, 0.0, 0.0), nIndex, 0.5), eNuFalse);
    EXPECT_EQ(nIndex, 1) << "left alone when not found";
    EXPECT_EQ(CNuPointArray().IsIn(CNuPoint(), 1.0), eNuFalse);
}

TEST(PointArrayShape, FindsNoncollinearAndNoncoplanarWitnesses) {
    CNuIntArray indices;
    ExpectNuFailure<Op>([] { CNuPointArray().IsNoncollinear(nullptr, 1e-9); }, 108,
                        "IsNoncollinear operation", "CNuPointArray::IsNoncollinear()");
    ExpectNuFailure<Op>([] { CNuPointArray().IsNoncoplanar(nullptr, 1e-9); }, 108,
                        "IsNoncoplanar operation", "CNuPointArray::IsNoncoplanar()");
    EXPECT_EQ(Points({{0, 0, 0}, {1, 0, 0}}).IsNoncollinear(&indices, 1e-9), eNuFalse);
    CNuPointArray line = Points({{0, 0, 0}, {0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {3, 3, 3}});
    EXPECT_EQ(line.IsNoncollinear(&indices, 1e-9), eNuFalse);
    EXPECT_EQ(indices.GetSize(), 0);
    CNuPointArray bent = Points({{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {0, 0, 7}});
    EXPECT_EQ(bent.IsNoncollinear(nullptr, 1e-9), eNuTrue);
    ASSERT_EQ(bent.IsNoncollinear(&indices, 1e-9), eNuTrue);
    ASSERT_EQ(indices.GetSize(), 3);
    EXPECT_EQ(indices[1], 2);
    EXPECT_EQ(indices[2], 4);
    CNuIntArray four;
    ASSERT_EQ(bent.IsNoncoplanar(&four, 1e-9), eNuTrue);
    ASSERT_EQ(four.GetSize(), 4);
    EXPECT_EQ(four[3], 5);
    EXPECT_EQ(line.IsNoncoplanar(&four, 1e-9), eNuFalse);
    CNuPointArray flat = Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {3, 4, 0}, {-1, 2, 0}});
    EXPECT_EQ(flat.IsNoncoplanar(nullptr, 1e-9), eNuFalse);
    EXPECT_EQ(Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}).IsNoncoplanar(nullptr, 1e-9), eNuFalse);
}

TEST(PointArrayShape, FlatnessInZHasItsSinglePointAsymmetry) {
    ExpectNuFailure<Op>([] { CNuPointArray().Is2D(1.0); }, 108, "Is2D operation",
                        "CNuPointArray::Is2D()");
    EXPECT_EQ(Points({{1, 1, 0.0}}).Is2D(1e-9), eNuTrue);
    EXPECT_EQ(Points({{1, 1, 5.0}}).Is2D(100.0), eNuFalse);
    EXPECT_EQ(Points({{1, 1, 5.0}, {2, 3, 5.0}}).Is2D(1e-9), eNuTrue);
    EXPECT_EQ(Points({{1, 1, 5.0}, {2, 3, 5.0}}).Is2D(0.0), eNuFalse) << "strict test";
    EXPECT_EQ(Points({{0, 0, 0}, {1, 0, 1e-10}}).Is2D(1e-9), eNuTrue);
    EXPECT_EQ(Points({{0, 0, 0}, {1, 0, 0.1}}).Is2D(1e-9), eNuFalse);
}

TEST(PointArraySets, CompareAsSetsAndAverage) {
    CNuPointArray a = Points({{0, 0, 0}, {1, 2, 3}, {4, 5, 6}});
    CNuPointArray b = Points({{4, 5, 6}, {0, 0, 0}, {1, 2, 3}});
    EXPECT_EQ(a.IsEqual(b, 1e-9), eNuTrue);
    EXPECT_EQ(a.IsEqual(a.SubArray(0, 1), 1e-9), eNuFalse);
    EXPECT_EQ(CNuPointArray().IsEqual(CNuPointArray(5), 1e-9), eNuTrue);
    EXPECT_EQ(Points({{0, 0, 0}, {0, 0, 0}, {1, 1, 1}})
                  .IsEqual(Points({{0, 0, 0}, {1, 1, 1}, {1, 1, 1}}), 1e-9),
              eNuTrue)
        << "membership both ways does not count multiplicities";
    EXPECT_TRUE(PointsNear(a.MeanPoint(), CNuPoint(5.0 / 3.0, 7.0 / 3.0, 3.0), test::kExact));
    EXPECT_TRUE(PointsNear(Points({{1, 2, 3}}).MeanPoint(), CNuPoint(1, 2, 3), test::kExact));
    ExpectNuFailure<Op>([] { CNuPointArray().MeanPoint(); }, 108, "MeanPoint operation",
                        "CNuPointArray::MeanPoint()");
}

TEST(PointArrayFrames, MoveToIsRigidAndRefusesEmptyArrays) {
    const char* apszLocations[] = {
        "CNuPointArray::MoveTo(const CNuPoint& origin)",
        "CNuPointArray::MoveTo(const CNuVector& zaxis)",
        "CNuPointArray::MoveTo(const CNuPoint& origin, const CNuVector& zaxis)",
        "CNuPointArray::MoveTo(const CNuPoint& origin, const CNuVector& xaxis, const "
        "CNuVector& zaxis)"};
    CNuPointArray empty;
    CNuPoint o(1, 2, 3);
    CNuVector z(0, 0, 1);
    CNuVector x(1, 0, 0);
    ExpectNuFailure<Op>([&] { empty.MoveTo(o); }, 108, "MoveTo operation", apszLocations[0]);
    ExpectNuFailure<Op>([&] { empty.MoveTo(z); }, 108, "MoveTo operation", apszLocations[1]);
    ExpectNuFailure<Op>([&] { empty.MoveTo(o, z); }, 108, "MoveTo operation",
                        Stored(apszLocations[2]).c_str());
    ExpectNuFailure<Op>([&] { empty.MoveTo(o, x, z); }, 108, "MoveTo operation",
                        Stored(apszLocations[3]).c_str());

    test::Random rng;
    CNuPointArray original = RandomPoints(rng, 20);
    CNuVector axis = test::RandomDirection(rng);
    CNuVector unit(axis);
    unit.Normalise();
    CNuPoint origin = test::RandomPoint(rng);
    CNuPointArray byAxis(original);
    byAxis.MoveTo(origin, axis);
    CNuPointArray shifted(original);
    shifted.MoveTo(origin);
    CNuPointArray turned(shifted);
    turned.MoveTo(axis * 2.0);
    for (int i = 0; i < 20; ++i) {
        // The new z is the offset along the unit axis; distances are kept.
        EXPECT_NEAR(byAxis[i].z(), (original[i] - origin).To3DVector() % unit, kGeometry);
        EXPECT_NEAR(byAxis[i].DistanceTo(byAxis[0]), original[i].DistanceTo(original[0]),
                    kGeometry);
        EXPECT_TRUE(PointsNear(turned[i], byAxis[i], kGeometry));
    }
    CNuVector xAxis;
    CNuVector zAxis(axis);
    zAxis.OrthonormalX(&xAxis);
    CNuPointArray framed(original);
    framed.MoveTo(origin, xAxis * 4.0, axis);
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(PointsNear(framed[i], byAxis[i], kGeometry));
}

TEST(PointArrayEdges, MatchABruteForceSearchWithFirstPairsWinningTies) {
    ExpectNuFailure<Op>([] { CNuPointArray().MaxEdge(nullptr, nullptr); }, 108, "MaxEdge operation",
                        "CNuPointArray::MaxEdge(int* m, int* n) const");
    ExpectNuFailure<Op>([] { CNuPointArray().MinEdge(nullptr, nullptr); }, 108, "MinEdge operation",
                        "CNuPointArray::MinEdge(int* m, int* n) const");
    int m = -1;
    int n = -1;
    EXPECT_EQ(Points({{1, 1, 1}}).MaxEdge(&m, &n), 0.0);
    EXPECT_EQ(m + n, 0);
    m = n = -1;
    EXPECT_EQ(Points({{1, 1, 1}}).MinEdge(&m, &n), 0.0);
    EXPECT_EQ(m + n, 0);
    EXPECT_EQ(Points({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}).MaxEdge(&m, &n), 0.0);
    EXPECT_EQ(m, 0);
    EXPECT_EQ(n, 1);
    // Square: both diagonals are longest, all four sides shortest; the first pair wins.
    CNuPointArray square = Points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
    EXPECT_DOUBLE_EQ(square.MaxEdge(&m, &n), std::sqrt(2.0));
    EXPECT_EQ(m * 10 + n, 2);
    EXPECT_EQ(square.MinEdge(&m, &n), 1.0);
    EXPECT_EQ(m * 10 + n, 1);

    test::Random rng;
    CNuPointArray cloud = RandomPoints(rng, 40);
    double dMax = -1.0;
    double dMin = 1e300;
    for (int i = 0; i < 40; ++i) {
        for (int j = i + 1; j < 40; ++j) {
            double d = cloud[i].DistanceTo(cloud[j]);
            dMax = std::fmax(dMax, d);
            dMin = std::fmin(dMin, d);
        }
    }
    EXPECT_EQ(cloud.MaxEdge(&m, &n), dMax);
    EXPECT_EQ(cloud[m].DistanceTo(cloud[n]), dMax);
    EXPECT_EQ(cloud.MinEdge(&m, &n), dMin);
    EXPECT_LT(m, n);
}

TEST(PointArrayBounds, BoxAndSphereEnclosePointsAndEmptyArraysGiveTheOrigin) {
    CNuPoint lo(7, 7, 7);
    CNuPoint hi(7, 7, 7);
    CNuPointArray().BoundingBox(&lo, &hi);
    EXPECT_TRUE(PointsNear(lo, CNuPoint(), test::kExact));
    EXPECT_TRUE(PointsNear(hi, CNuPoint(), test::kExact));
    double dRadius = -1.0;
    CNuPoint centre(5, 5, 5);
    CNuPointArray().BoundingSphere(&dRadius, &centre);
    EXPECT_EQ(dRadius, 0.0);
    EXPECT_TRUE(PointsNear(centre, CNuPoint(), test::kExact));

    CNuPointArray a = Points({{1, -2, 0}, {-3, 4, 2}, {0, 0, -6}});
    a.BoundingBox(&lo, &hi);
    EXPECT_TRUE(PointsNear(lo, CNuPoint(-3, -2, -6), test::kExact));
    EXPECT_TRUE(PointsNear(hi, CNuPoint(1, 4, 2), test::kExact));
    a.BoundingSphere(&dRadius, &centre);
    EXPECT_TRUE(PointsNear(centre, CNuPoint(-1, 1, -2), test::kExact));
    EXPECT_EQ(dRadius, NuPythag(2.0, 3.0, 4.0));
    for (int i = 0; i < a.GetSize(); ++i)
        EXPECT_LE(a[i].DistanceTo(centre), dRadius);
}

TEST(PointSetStatics, CollinearityReportsThePlaneOfTheFirstBend) {
    CNuVector normal;
    EXPECT_EQ(CNuGeometry::AreCollinear(Points({{0, 0, 0}, {1, 1, 1}}), &normal, 1e-9), 1);
    EXPECT_EQ(CNuGeometry::AreCollinear(Points({{2, 2, 2}, {2, 2, 2}, {2, 2, 2}}), &normal, 1e-9),
              1);
    EXPECT_EQ(CNuGeometry::AreCollinear(Points({{0, 0, 0}, {1, 1, 0}, {2, 2, 0}}), &normal, 1e-9),
              1);
    EXPECT_EQ(normal.Magnitude(), 0.0) << "the vector stays as it was when 1 is returned";
    EXPECT_EQ(CNuGeometry::AreCollinear(Points({{0, 0, 0}, {2, 0, 0}, {0, 0, 0}, {0, 3, 0}}),
                                        &normal, 1e-9),
              0);
    EXPECT_EQ(normal[2], 1.0);
    // A bend within the tolerance of the cross product does not count.
    EXPECT_EQ(
        CNuGeometry::AreCollinear(Points({{0, 0, 0}, {1, 0, 0}, {2, 1e-3, 0}}), nullptr, 0.01), 1);
}

TEST(PointSetStatics, CoplanarityStoresItsPlane) {
    CNuPlane plane(CNuPoint(9, 9, 9), CNuVector(1, 0, 0));
    EXPECT_EQ(CNuGeometry::AreCoplanar(Points({{0, 0, 0}, {1, 5, 0}, {0, 0, 7}}), &plane, 1e-9), 1);
    EXPECT_EQ(plane.GetPoint().x(), 9.0) << "fewer than four points leave the plane alone";
    CNuPointArray flat = Points({{0, 0, 1}, {1, 0, 1}, {0, 1, 1}, {3, 4, 1}, {-1, 2, 1}});
    EXPECT_EQ(CNuGeometry::AreCoplanar(flat, &plane, 1e-9), 1);
    EXPECT_EQ(std::fabs(plane.GetNormal()[2]), 1.0);
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

TEST(PointSetStatics, NumberDistinctPointsAnswersWhetherEnoughExist) {
    CNuPointArray same = Points({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}});
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(same, 2, 1e-9), 0);
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(same, 1, 1e-9), 1);
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(same, 6, 1e-9), 0);
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(CNuPointArray(), 1, 1e-9), 0);
    // By distance, not by box: (0.6, 0.6, 0) is 0.85 from the origin.
    CNuPointArray pair = Points({{0, 0, 0}, {0.6, 0.6, 0}});
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(pair, 2, 0.8), 1);
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(pair, 2, 0.9), 0);
    CNuPointArray three = Points({{0, 0, 0}, {1, 0, 0}, {0.5, 0, 0}, {1, 0, 0}, {0, 2, 0}});
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(three, 3, 0.7), 1);
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(three, 4, 0.7), 0);
}

TEST(PointSetStatics, ProjectionsFlattenIntoTheGivenFrames) {
    test::Random rng;
    CNuPointArray cloud = RandomPoints(rng, 25);
    CNuVector axis = test::RandomDirection(rng);
    CNuPointArray flat = CNuGeometry::Projection2D(cloud, axis);
    ASSERT_EQ(flat.GetSize(), 25);
    CNuVector unit(axis);
    unit.Normalise();
    for (int i = 0; i < 25; ++i) {
        EXPECT_EQ(flat[i].z(), 0.0);
        // What is lost is exactly the component along the axis.
        double dAlong = cloud[i].To3DVector() % unit;
        double dLength = cloud[i].To3DVector().Magnitude();
        EXPECT_NEAR(flat[i].To3DVector().Magnitude(),
                    std::sqrt(dLength * dLength - dAlong * dAlong), kGeometry);
    }

    CNuPointArray framed =
        CNuGeometry::Projection2D(cloud, CNuPoint(1, 1, 1), CNuVector(2, 0, 0), CNuVector(0, 1, 0));
    for (int i = 0; i < 25; ++i) {
        EXPECT_EQ(framed[i].x(), (cloud[i].x() - 1.0) * 2.0) << "axes are used unchanged";
        EXPECT_EQ(framed[i].y(), cloud[i].y() - 1.0);
    }
    EXPECT_EQ(CNuGeometry::Projection2D(CNuPointArray(), axis).GetSize(), 0);
}

}  // namespace
}  // namespace numorix
