// SPDX-License-Identifier: MIT
#include "support/com/LateBound.h"
#include "support/product/LabelPrinterTest.h"
#include "support/TemporaryDirectory.h"

namespace {

class ConfigurationObject : public LabelPrinterTest {
protected:
    void SetUp() override
    {
        LabelPrinterTest::SetUp();
        configuration = ChildOf(&IPrinter::get_Configuration);
        filter = Create<IPrinterConfigurationFilter>(__uuidof(PrinterConfigurationFilter));
        file = NewBstr(folder.Path(L"settings.set"));
    }

    void TearDown() override
    {
        configuration.Reset();
        filter.Reset();
        LabelPrinterTest::TearDown();
    }

    static _variant_t Omitted() { return _variant_t(static_cast<long>(DISP_E_PARAMNOTFOUND), VT_ERROR); }
    _variant_t Filter() const { return _variant_t(static_cast<IDispatch*>(filter.Get())); }
    std::string File() const { return folder.Contents(L"settings.set"); }

    /// Replaces a text in the exported file.
    void Edit(const std::string& from, const std::string& to)
    {
        std::string text = File();
        const size_t position = text.find(from);
        ASSERT_NE(position, std::string::npos) << text;
        folder.Make(L"settings.set", text.replace(position, from.size(), to));
    }

    TemporaryDirectory folder;
    OwnedBstr file;
    ComPtr<IPrinterConfiguration> configuration;
    ComPtr<IPrinterConfigurationFilter> filter;
};

TEST_F(ConfigurationObject, SettingsAreExportedChangedAndImported)
{
    EXPECT_EQ(configuration->Export(file.Get(), Omitted()), S_OK);
    Edit("speed = 100", "speed = 150");
    EXPECT_EQ(configuration->Import(file.Get(), Omitted()), S_OK);
    EXPECT_EQ(DeviceValue(L"speed"), L"150") << "an import is saved, and the device follows";
    EXPECT_EQ(configuration->Export(file.Get(), Omitted()), S_OK);
    EXPECT_NE(File().find("speed = 150"), std::string::npos);
    EXPECT_EQ(configuration->ResetToDefaults(Omitted()), S_OK);
    EXPECT_EQ(DeviceValue(L"speed"), L"100");
}

TEST_F(ConfigurationObject, FilterChoosesTheGroups)
{
    filter->put_Stocks(VARIANT_TRUE);
    filter->put_NetworkSettings(VARIANT_TRUE);
    EXPECT_EQ(configuration->Export(file.Get(), Filter()), S_OK);
    EXPECT_NE(File().find("[Stocks]"), std::string::npos);
    EXPECT_NE(File().find("[NetworkSettings]"), std::string::npos);
    EXPECT_EQ(File().find("[PrintingPreferences]"), std::string::npos);
}

TEST_F(ConfigurationObject, ImportOfAFilterLeavesTheOtherGroups)
{
    EXPECT_EQ(configuration->Export(file.Get(), Omitted()), S_OK);
    Edit("speed = 100", "speed = 150");
    filter->put_Stocks(VARIANT_TRUE);
    EXPECT_EQ(configuration->Import(file.Get(), Filter()), S_OK);
    EXPECT_EQ(DeviceValue(L"speed"), L"100");
}

TEST_F(ConfigurationObject, SavedSettingsOutliveTheObject)
{
    EXPECT_EQ(configuration->Export(file.Get(), Omitted()), S_OK);
    Edit("port = 9100", "port = 9101");
    EXPECT_EQ(configuration->Import(file.Get(), Omitted()), S_OK);
    configuration.Reset();
    configuration = ChildOf(&IPrinter::get_Configuration);
    EXPECT_EQ(configuration->Export(file.Get(), Omitted()), S_OK);
    EXPECT_NE(File().find("port = 9101"), std::string::npos);
}

TEST_F(ConfigurationObject, DriverThatCannotReadAFileIsNotNoticed)
{
    EXPECT_EQ(AnswerOf(configuration->Import(NewBstr(folder.Path(L"missing.set")).Get(), Omitted())), succeeded);
}

TEST_F(ConfigurationObject, PlainPrinterSaysFalseWithoutAText)
{
    AddPrinterNamed(L"Plain");
    configuration = ChildOf(&IPrinter::get_Configuration, L"Plain");
    EXPECT_EQ(AnswerOf(configuration->Import(file.Get(), Omitted())), saysFalse);
    EXPECT_EQ(AnswerOf(configuration->Export(file.Get(), Omitted())), saysFalse);
    EXPECT_EQ(AnswerOf(configuration->ResetToDefaults(Omitted())), saysFalse);
    EXPECT_FALSE(folder.Has(L"settings.set"));
}

TEST_F(ConfigurationObject, UnboundObjectTellsSo)
{
    const auto unbound = Create<IPrinterConfiguration>(__uuidof(PrinterConfiguration));
    EXPECT_EQ(AnswerOf(unbound->Export(file.Get(), Omitted())), configurationNotInitialized);
}

TEST_F(ConfigurationObject, LateBoundCallerMayLeaveTheFilterOut)
{
    const LateBound late(configuration.Get());
    EXPECT_EQ(late.Call("Export", {_variant_t(file.Get())}).result, S_OK);
    EXPECT_NE(File().find("[Stocks]"), std::string::npos);
    EXPECT_EQ(late.Call("ResetToDefaults", {}).result, S_OK);
    LateBound(filter.Get()).Put("Presets", true);
    EXPECT_EQ(late.Call("Export", {_variant_t(file.Get()), Filter()}).result, S_OK);
    EXPECT_EQ(File().find("[Stocks]"), std::string::npos);
    EXPECT_NE(File().find("[Presets]"), std::string::npos);
}

} // namespace
