#include "garage/Garage.h"
#include "garage/ProfileReader.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kvx::garage {
namespace {

const QString kShipped = QStringLiteral(KVX_RESOURCES_DIR "/vehicles");

std::string names(const GarageListing& listing)
{
    QStringList out;
    for (const GarageCar& car : listing.cars)
        out << car.name;
    return out.join(' ').toStdString();
}

TEST(Garage, EveryShippedCarLoadsAndSitsBesideTheProgram)
{
    const GarageListing shipped = listGarage(kShipped);
    EXPECT_TRUE(shipped.problems.isEmpty()) << shipped.problems.join('\n').toStdString();
    for (const char* car : {"iso9141", "kwp-slow", "kwp-fast", "hybrid", "four-bank", "diesel", "nissan", "toyota",
                            "two-units"})
        EXPECT_NE(names(shipped).find(car), std::string::npos) << car;
    for (const GarageCar& car : shipped.cars)
        EXPECT_GT(car.comment.size(), 40) << car.name.toStdString() << " says too little of what it stands for";
    // The build copies the garage beside the program, where the programs look for it.
    EXPECT_EQ(names(listGarage(KVX_BIN_DIR "/vehicles")), names(shipped));
}

TEST(Garage, TheDefaultCarIsTheBuiltInOne)
{
    sim::VehicleProfile file = findVehicle(kDefaultCar, kShipped);
    EXPECT_EQ(file.name, kDefaultCar);
    const sim::VehicleProfile builtIn = sim::builtInVehicle();
    file.name = builtIn.name; // a file's car is named by the file
    EXPECT_EQ(file, builtIn);
}

TEST(Garage, FindsACarByNameOrByFileAndSaysWhichIsMissingOrBroken)
{
    EXPECT_EQ(findVehicle("hybrid", kShipped).name, "hybrid");
    EXPECT_EQ(findVehicle(kShipped + "/diesel.json", "/nowhere").name, "diesel");

    QTemporaryDir dir;
    QFile broken(dir.filePath("broken.json"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write(R"({"comment": "a car with a typo", "units": [{"adress": "10"}]})");
    broken.close();
    QFile::copy(kShipped + "/toyota.json", dir.filePath("toyota.json"));

    const GarageListing listing = listGarage(dir.path());
    EXPECT_EQ(names(listing), "toyota");
    ASSERT_EQ(listing.problems.size(), 1);
    EXPECT_TRUE(listing.problems[0].contains("broken.json: units[0].adress: unknown key")) << listing.problems[0].toStdString();

    const auto message = [&](const QString& nameOrFile) {
        try {
            findVehicle(nameOrFile, dir.path());
        } catch (const ProfileError& e) {
            return QString::fromStdString(e.what());
        }
        return QString();
    };
    EXPECT_TRUE(message("broken").contains("units[0].adress")) << message("broken").toStdString();
    EXPECT_TRUE(message("lorry").contains("no car named 'lorry' in the garage")) << message("lorry").toStdString();
    EXPECT_TRUE(message(dir.filePath("absent.json")).contains("absent.json: cannot be read"));
}

} // namespace
} // namespace kvx::garage
