#include "Workbench/project/Survey.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Workbench/mesher/Mesh.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;

/// A model in millimetres whose site is far away and turned, with these records more.
API_Tranmat SurveyOf(const std::string& records, const std::string& lengthUnit = ".MILLI.") {
    const std::string model =
        "#1=IFCPROJECT('0mVyF7z2L5MQpXqQ0aJ3u1',$,$,$,$,$,$,(#2),#5);\n"
        "#2=IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,1.E-5,#3,#20);\n"
        "#3=IFCAXIS2PLACEMENT3D(#4,$,$);\n#4=IFCCARTESIANPOINT((0.,0.,0.));\n"
        "#5=IFCUNITASSIGNMENT((#6));\n#6=IFCSIUNIT(*,.LENGTHUNIT.," +
        lengthUnit +
        ",.METRE.);\n"
        "#7=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);\n"
        "#8=IFCCONVERSIONBASEDUNIT(#9,.LENGTHUNIT.,'FOOT',#10);\n#9=IFCDIMENSIONALEXPONENTS(1,0,0,0,0,0,0);\n"
        "#10=IFCMEASUREWITHUNIT(IFCLENGTHMEASURE(0.3048),#7);\n"
        "#20=IFCDIRECTION((0.6,0.8));\n"
        "#21=IFCSITE('20FpTZCqJy2vhVJYtjuIce',$,$,$,$,#22,$,$,.ELEMENT.,$,$,$,$,$);\n"
        "#22=IFCLOCALPLACEMENT($,#23);\n#23=IFCAXIS2PLACEMENT3D(#24,$,#20);\n"
        "#24=IFCCARTESIANPOINT((350000000.,5600000000.,112000.));\n";
    return SurveyTransformation(
        Project(step::Document::FromBytes(step::StepFile(model + records)), "/models/House.ifc"));
}

Vec3 Moved(const API_Tranmat& matrix, const Vec3& point) {
    const auto row = [&](size_t at) {
        return matrix.tmx[at] * point.x + matrix.tmx[at + 1] * point.y + matrix.tmx[at + 2] * point.z +
               matrix.tmx[at + 3];
    };
    return {row(0), row(4), row(8)};
}

TEST(Survey, TurnsAndShiftsIntoTheMap) {
    // Local X points to north-east: 3 east for 4 north.
    const API_Tranmat matrix = SurveyOf(
        "#30=IFCPROJECTEDCRS('EPSG:25832',$,$,$,$,$,#7);\n"
        "#31=IFCMAPCONVERSION(#2,#30,350000.5,5600000.25,112.5,3.,4.,0.001);\n");
    EXPECT_THAT(matrix.tmx,
                ElementsAre(DoubleNear(0.6, 1e-12), DoubleNear(-0.8, 1e-12), 0, 350000.5,
                            DoubleNear(0.8, 1e-12), DoubleNear(0.6, 1e-12), 0, 5600000.25, 0, 0, 1, 112.5));
    const Vec3 moved = Moved(matrix, {10, 5, 2});
    EXPECT_NEAR(moved.x, 350000.5 + 6 - 4, 1e-6);
    EXPECT_NEAR(moved.y, 5600000.25 + 8 + 3, 1e-6);
    EXPECT_NEAR(moved.z, 114.5, 1e-9);
}

TEST(Survey, KnowsTheUnitOfTheMap) {
    const struct {
        const char* unit;
        const char* projected;  // map unit of the projected system
        const char* scale;
        double eastings;  // for 2000 written
    } cases[] = {
        {".MILLI.", "#7", "0.001", 2000},
        {".MILLI.", "#8", "0.00328083989501312", 609.6},
        {"$", "#8", "3.28083989501312", 609.6},
        {"$", "$", "$", 2000},
        {"$", "$", "0.9996", 2000},
        {".MILLI.", "$", "$", 2},
        {".MILLI.", "$", "1.", 2},
        {".MILLI.", "$", "0.001", 2000},
        {".MILLI.", "#6", "1.", 2},
        {".MILLI.", "#9", "0.001", 2000},  // no unit
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << test.unit << ' ' << test.projected << ' ' << test.scale);
        const API_Tranmat matrix =
            SurveyOf(std::string("#30=IFCPROJECTEDCRS('x',$,$,$,$,$,") + test.projected +
                         ");\n#31=IFCMAPCONVERSION(#2,#30,2000.,2000.,1000.,$,$," + test.scale + ");\n",
                     test.unit);
        EXPECT_NEAR(matrix.tmx[3], test.eastings, 1e-9);
        EXPECT_NEAR(matrix.tmx[7], test.eastings, 1e-9);
        EXPECT_NEAR(matrix.tmx[11], test.eastings / 2, 1e-9);
        EXPECT_EQ(matrix.tmx[0], 1);  // metres stay metres
    }
}

TEST(Survey, ReadsThePropertySetOfOlderSchemas) {
    const std::string properties =
        "#30=IFCPROPERTYSET('3ko_MBwD17ZAIDG4mQnhkm',$,'ePSet_MapConversion',$,(#31,#32,#33,#34,#35,#99,#36));\n"
        "#31=IFCPROPERTYSINGLEVALUE('Eastings',$,IFCLENGTHMEASURE(76670.),$);\n"
        "#32=IFCPROPERTYSINGLEVALUE('northings',$,IFCLENGTHMEASURE(77179.),#8);\n"
        "#33=IFCPROPERTYSINGLEVALUE('OrthogonalHeight',$,IFCLENGTHMEASURE(293.7),$);\n"
        "#34=IFCPROPERTYSINGLEVALUE('XAxisAbscissa',$,IFCREAL(0.),$);\n"
        "#35=IFCPROPERTYSINGLEVALUE('XAxisOrdinate',$,IFCREAL(-2.),$);\n"
        "#36=IFCPROPERTYSINGLEVALUE('TargetCRS',$,IFCLABEL('x'),$);\n";
    EXPECT_THAT(SurveyOf(properties, "$").tmx,
                ElementsAre(0, 1, 0, 76670, -1, 0, 0, DoubleNear(77179 * 0.3048, 1e-9), 0, 0, 1, 293.7));
    EXPECT_EQ(SurveyOf(properties + "#40=IFCMAPCONVERSION(#2,$,1.,2.,3.,$,$,$);\n", "$").tmx[3], 1)
        << "the schema's own conversion comes first";
}

TEST(Survey, SaysNothingWhenTheModelDoes) {
    const auto identity = ElementsAre(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0);
    for (const char* records : {
             "",  // the placement of the site, far away, is in the shapes already
             "#31=IFCMAPCONVERSION($,$,$,$,$,$,$,$);\n",
             "#31=IFCMAPCONVERSION();\n",
             "#31=IFCMAPCONVERSION(#99,#98,'x',.T.,(1.),0.,0.,-1.#IND);\n",
             "#31=IFCMAPCONVERSION(#2,#31,0.,0.,0.,0.,0.,0.);\n",
             "#31=IFCMAPCONVERSION(#2,$,0.,nan,inf,1.7E308,1.7E308,1.);\n",
             "#31=IFCPROPERTYSET('x',$,'ePSet_MapConversion',$,$);\n",
             "#31=IFCPROPERTYSET('x',$,'ePSet_MapConversion',$,(#31,#1));\n",
         })
        EXPECT_THAT(SurveyOf(records).tmx, identity) << records;
    EXPECT_THAT(SurveyTransformation(*Project::Untitled()).tmx, identity);
}

TEST(Survey, TakesWhatIsReadableOfADamagedConversion) {
    const API_Tranmat half = SurveyOf(
        "#30=IFCMAPCONVERSION(#2,$,$,$,$,$,$,$);\n"
        "#31=IFCMAPCONVERSION(#2,$,500.,$,'x',$,-3.,$);\n",
        "$");
    EXPECT_THAT(half.tmx, ElementsAre(0, 1, 0, 500, -1, 0, 0, 0, 0, 0, 1, 0));
}

}  // namespace
}  // namespace workbench
