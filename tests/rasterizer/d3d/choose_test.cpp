#include "rasterizer/d3d/choose.h"

#include "rasterizer/d3d/constants.h"
#include "tests/support/d3drecorder.h"

static D3DDriverReport otherDriver()
{
    D3DDriverReport driver = desktopDriver();
    driver.primary = false;
    driver.guid = {1, 2, 3, {}};
    return driver;
}

static std::vector<std::string> names(const D3DDeviceTable& table)
{
    std::vector<std::string> result;
    for (int i = 0; i < table.count; ++i)
        result.push_back(table.records[i].description);
    return result;
}

using Names = std::vector<std::string>;

TEST(CollectDevices, RecordsWhatADeviceSays)
{
    D3DDeviceTable table;
    ASSERT_EQ(collectDevices({desktopDriver()}, &table), 0u);
    EXPECT_EQ(names(table), (Names{"software", "plain", "transform"}));

    const D3DDeviceRecord& plain = table.records[1];
    EXPECT_EQ(*plain.device, d3d::halDevice);
    EXPECT_EQ(plain.device, &plain.deviceGuid);
    EXPECT_TRUE(plain.hardware);
    EXPECT_FALSE(table.records[0].hardware);
    EXPECT_EQ(plain.driver, nullptr);
    EXPECT_TRUE(plain.desktopCompatible);
    EXPECT_TRUE(plain.windowed);
    EXPECT_FALSE(plain.stereo);
    EXPECT_EQ(plain.hardwareCaps.caps2, d3d::canRenderWindowed);
}

TEST(CollectDevices, OnlyThePrimaryDriverThatRendersInWindowsSuitsTheDesktop)
{
    D3DDriverReport fullScreenOnly = desktopDriver();
    fullScreenOnly.hardware.caps2 = 0;
    D3DDeviceTable table;
    collectDevices({fullScreenOnly, otherDriver()}, &table);
    for (int i = 0; i < table.count; ++i)
    {
        EXPECT_FALSE(table.records[i].desktopCompatible) << i;
        EXPECT_FALSE(table.records[i].windowed) << i;
    }
}

TEST(CollectDevices, SoftwareOfASecondaryDriverIsDropped)
{
    D3DDeviceTable table;
    collectDevices({otherDriver()}, &table);
    EXPECT_EQ(names(table), (Names{"plain", "transform"}));
    EXPECT_EQ(table.records[0].driver, &table.records[0].driverGuid);
    EXPECT_EQ(*table.records[0].driver, (D3DGuid{1, 2, 3, {}}));
}

TEST(CollectDevices, DeviceMustBlendByOneAndHaveTwoTextures)
{
    for (int lack = 0; lack < 3; ++lack)
    {
        D3DDriverReport driver = desktopDriver();
        for (D3DDeviceReport& device : driver.devices)
        {
            if (lack == 0)
                device.caps.triangleSourceBlend = ~d3d::blendOne;
            else if (lack == 1)
                device.caps.triangleDestBlend = 0;
            else
                device.caps.simultaneousTextures = 1;
        }
        D3DDeviceTable table;
        EXPECT_EQ(collectDevices({driver}, &table), d3d::noDevices) << lack;
        EXPECT_EQ(table.count, 0);
    }
}

TEST(CollectDevices, NoDriverAndNoDeviceAreTwoFailures)
{
    D3DDeviceTable table;
    EXPECT_EQ(collectDevices({}, &table), 0x81000002u);
    D3DDriverReport bare = desktopDriver();
    bare.devices.clear();
    EXPECT_EQ(collectDevices({bare}, &table), 0x81000003u);
}

TEST(CollectDevices, ModesAreSortedAndThoseOfOtherDepthsLeftOut)
{
    D3DDriverReport driver = desktopDriver();
    driver.modes = {{800, 600, 16, 0}, {640, 512, 24, 0}, {640, 480, 32, 0}, {800, 600, 8, 0},
                    {640, 480, 16, 0}, {320, 900, 16, 0}, {640, 480, 15, 0}};
    D3DDeviceTable table;
    collectDevices({driver}, &table);
    EXPECT_EQ(
        table.records[1].modes,
        (std::vector<D3DMode>{{320, 900, 16, 0}, {640, 480, 16, 0}, {640, 480, 32, 0}, {800, 600, 16, 0}}));

    driver.devices[1].caps.renderDepths = d3d::renderDepth24;
    collectDevices({driver}, &table);
    EXPECT_EQ(table.records[1].modes, (std::vector<D3DMode>{{640, 512, 24, 0}}));
}

TEST(CollectDevices, DefaultModeIs640By480By16)
{
    D3DDeviceTable table;
    collectDevices({desktopDriver()}, &table);
    EXPECT_EQ(table.records[1].fullScreenMode, (D3DMode{640, 480, 16, 60}));
    EXPECT_EQ(table.records[1].currentMode, 0);

    D3DDriverReport without = desktopDriver();
    without.modes = {{800, 600, 32, 60}};
    collectDevices({without}, &table);
    EXPECT_EQ(table.records[1].fullScreenMode, D3DMode{});
}

TEST(CollectDevices, TableStopsAtItsEnd)
{
    D3DDeviceTable table;
    EXPECT_EQ(collectDevices(std::vector<D3DDriverReport>(30, desktopDriver()), &table), 0u);
    EXPECT_EQ(table.count, 20);
}

TEST(CollectDevices, LongNamesAreCut)
{
    D3DDriverReport driver = desktopDriver();
    driver.devices[0].name = std::string(100, 'x');
    D3DDeviceTable table;
    collectDevices({driver}, &table);
    EXPECT_EQ(std::string(table.records[0].description), std::string(39, 'x'));
}

class SelectDevice : public ::testing::Test
{
protected:
    D3DDeviceTable table;

    std::string selected(const std::vector<D3DDriverReport>& drivers, bool useTnL, int secondaryDevice)
    {
        collectDevices(drivers, &table);
        const D3DDeviceRecord* record = selectDevice(&table, useTnL, secondaryDevice);
        return record ? (record->driver ? "second " : "") + std::string(record->description) : "none";
    }
};

TEST_F(SelectDevice, PlainHardwareUnlessTransformIsAskedFor)
{
    EXPECT_EQ(selected({desktopDriver()}, false, 0), "plain");
    EXPECT_EQ(selected({desktopDriver()}, true, 0), "transform");
}

TEST_F(SelectDevice, WithoutTransformThePlainOneIsTaken)
{
    D3DDriverReport driver = desktopDriver();
    driver.devices.pop_back();
    EXPECT_EQ(selected({driver}, true, 0), "plain");
}

TEST_F(SelectDevice, TransformIsNoSubstituteForThePlainOne)
{
    D3DDriverReport driver = desktopDriver();
    driver.devices.erase(driver.devices.begin() + 1);
    EXPECT_EQ(selected({driver}, false, 0), "none");
}

TEST_F(SelectDevice, SecondaryIsTakenForExactlyOne)
{
    const std::vector<D3DDriverReport> drivers = {desktopDriver(), otherDriver()};
    EXPECT_EQ(selected(drivers, true, 1), "second plain");
    EXPECT_EQ(selected(drivers, false, 0), "plain");
    EXPECT_EQ(selected(drivers, false, 2), "plain");
    EXPECT_EQ(selected(drivers, true, -1), "transform");
}

TEST_F(SelectDevice, WithoutSecondaryTheOtherRulesGoOn)
{
    EXPECT_EQ(selected({desktopDriver()}, false, 1), "plain");
    EXPECT_EQ(selected({desktopDriver()}, true, 1), "transform");
}

TEST_F(SelectDevice, SecondaryNeedsThePlainIdentifier)
{
    D3DDriverReport other = otherDriver();
    other.devices.erase(other.devices.begin() + 1);
    EXPECT_EQ(selected({desktopDriver(), other}, false, 1), "plain");
}

TEST_F(SelectDevice, TheLastOfAKindWins)
{
    D3DDriverReport driver = desktopDriver();
    driver.devices.push_back(deviceReport("plain again", d3d::halDevice, true));
    driver.devices.push_back(deviceReport("transform again", d3d::tnlHalDevice, true));
    EXPECT_EQ(selected({driver}, false, 0), "plain again");
    EXPECT_EQ(selected({driver}, true, 0), "transform again");

    D3DDriverReport third = otherDriver();
    third.devices = {deviceReport("far", d3d::halDevice, true)};
    EXPECT_EQ(selected({desktopDriver(), otherDriver(), third}, false, 1), "second far");
}

TEST_F(SelectDevice, HardwareUnderAnyOtherIdentifierIsPlain)
{
    D3DDriverReport driver = desktopDriver();
    driver.devices = {deviceReport("odd", {9, 9, 9, {}}, true)};
    EXPECT_EQ(selected({driver}, false, 0), "odd");
}

TEST_F(SelectDevice, SoftwareIsNeverTaken)
{
    D3DDriverReport driver = desktopDriver();
    driver.devices.resize(1);
    EXPECT_EQ(selected({driver}, true, 1), "none");
}

TEST(SelectMode, LastExactMatchWins)
{
    D3DDriverReport driver = desktopDriver();
    driver.modes = {{800, 600, 32, 60}, {800, 600, 32, 75}, {800, 600, 16, 60}, {640, 480, 16, 60}};
    D3DDeviceTable table;
    collectDevices({driver}, &table);
    D3DDeviceRecord& record = table.records[1];
    selectMode(&record, 800, 600, 32);
    EXPECT_EQ(record.fullScreenMode, (D3DMode{800, 600, 32, 75}));
    EXPECT_EQ(record.currentMode, 3);
}

TEST(SelectMode, UnknownSizeKeepsTheDefault)
{
    D3DDeviceTable table;
    collectDevices({desktopDriver()}, &table);
    D3DDeviceRecord& record = table.records[1];
    for (const auto& [w, h, bits] : {std::tuple{800, 600, 16}, {801, 600, 32}, {-640, 480, 16}, {0, 0, 0}})
    {
        selectMode(&record, w, h, bits);
        EXPECT_EQ(record.fullScreenMode, (D3DMode{640, 480, 16, 60}));
        EXPECT_EQ(record.currentMode, 0);
    }
}

static D3DPixelFormat depthFormat(uint32_t bits)
{
    return {d3d::pixelsDepth, bits, 0, 0, 0, 0, 0, 0};
}

TEST(ChooseDepthFormat, AsDeepAsTheBackBufferElse16Bits)
{
    const std::vector<D3DPixelFormat> formats = {depthFormat(24), depthFormat(16), depthFormat(32)};
    EXPECT_EQ(chooseDepthFormat(formats, 32), &formats[2]);
    EXPECT_EQ(chooseDepthFormat(formats, 24), &formats[0]);
    EXPECT_EQ(chooseDepthFormat(formats, 15), &formats[1]);
    EXPECT_EQ(chooseDepthFormat({depthFormat(24)}, 32), nullptr);
    EXPECT_EQ(chooseDepthFormat({}, 16), nullptr);

    D3DPixelFormat stencilOnly = depthFormat(32);
    stencilOnly.flags = d3d::pixelsStencil;
    EXPECT_EQ(chooseDepthFormat({stencilOnly}, 32), nullptr);
}

class ChooseTextureFormat : public ::testing::Test
{
protected:
    std::vector<D3DPixelFormat> formats = commonTextureFormats(); // 565, 1555, 4444, 8888

    int chosen(uint32_t bits, bool alpha) const
    {
        const D3DPixelFormat* format = chooseTextureFormat(formats, bits, alpha);
        return format ? static_cast<int>(format - formats.data()) : -1;
    }
};

TEST_F(ChooseTextureFormat, ByDepthAndAlpha)
{
    EXPECT_EQ(chosen(32, true), 3);
    EXPECT_EQ(chosen(16, true), 2);
    EXPECT_EQ(chosen(16, false), 0);
    EXPECT_EQ(chosen(32, false), 3);
}

TEST_F(ChooseTextureFormat, OneBitOfAlphaWhereThereAreNotFour)
{
    formats.erase(formats.begin() + 2);
    EXPECT_EQ(chosen(16, true), 1);
}

TEST_F(ChooseTextureFormat, FourBitsAChannelWinOverMoreAlphaInFewColours)
{
    const D3DPixelFormat a8r3g3b2 = {d3d::pixelsRgb | d3d::pixelsAlpha, 16, 0xE0, 0x1C, 0x3, 0xFF00, 0, 0};
    formats.insert(formats.begin(), a8r3g3b2);
    EXPECT_EQ(chosen(16, true), 3);
    formats.push_back(a8r3g3b2);
    formats.erase(formats.begin());
    EXPECT_EQ(chosen(16, true), 2);
}

TEST_F(ChooseTextureFormat, MissingDepthIsReplaced)
{
    formats = {commonTextureFormats()[2]};
    EXPECT_EQ(chosen(32, true), 0);
    formats = {commonTextureFormats()[3]};
    EXPECT_EQ(chosen(16, true), 0);
    formats = {commonTextureFormats()[0]};
    EXPECT_EQ(chosen(16, true), 0);
}

TEST_F(ChooseTextureFormat, BumpLuminanceCodesAndShallowFormatsAreRefused)
{
    for (const uint32_t flag :
         {d3d::pixelsFourCC, d3d::pixelsLuminance, d3d::pixelsBump, d3d::pixelsBumpLuminance})
    {
        formats = commonTextureFormats();
        for (D3DPixelFormat& format : formats)
            format.flags |= flag;
        EXPECT_EQ(chosen(16, true), -1) << flag;
        EXPECT_EQ(chosen(32, false), -1) << flag;
    }
    formats = {{d3d::pixelsRgb, 8, 0xE0, 0x1C, 0x3, 0, 0, 0}, {0, 16, 0xF800, 0x07E0, 0x1F, 0, 0, 0}};
    EXPECT_EQ(chosen(16, false), -1);
    formats.clear();
    EXPECT_EQ(chosen(16, false), -1);
}

TEST(TextureSize, RaisedAsTheDeviceRequires)
{
    const auto size = [](int w, int h, uint32_t caps)
    {
        const D3DSize s = textureSize(w, h, caps);
        return std::pair(s.width, s.height);
    };
    EXPECT_EQ(size(100, 33, 0), std::pair(100, 33));
    EXPECT_EQ(size(100, 33, d3d::texturePow2), std::pair(128, 64));
    EXPECT_EQ(size(64, 1, d3d::texturePow2), std::pair(64, 1));
    EXPECT_EQ(size(100, 33, d3d::textureSquareOnly), std::pair(100, 100));
    EXPECT_EQ(size(33, 100, d3d::texturePow2 | d3d::textureSquareOnly), std::pair(128, 128));
    EXPECT_EQ(size(0, -3, d3d::texturePow2), std::pair(1, 1));
    EXPECT_EQ(size(INT32_MAX, 2, d3d::texturePow2), std::pair(INT32_MAX, 2));
}

TEST(MipLevels, Log2OfTheSmallerSide)
{
    EXPECT_EQ(mipLevels({64, 64}), 6);
    EXPECT_EQ(mipLevels({256, 16}), 4);
    EXPECT_EQ(mipLevels({100, 33}), 5);
    EXPECT_EQ(mipLevels({1, 64}), 1);
    EXPECT_EQ(mipLevels({2, 2}), 1);
}
