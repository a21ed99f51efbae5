#include <gtest/gtest.h>

#include "foundation/modules/MModule.h"
#include "tests/host/vst3/FakeVst3Host.h"

using namespace Vst3;
using fakehost::Instance;

namespace
{

constexpr Uid Ids[] = {
    FUnknown::Id,         IPluginBase::Id,     IComponent::Id,
    IAudioProcessor::Id,  IEditController::Id, IUnitInfo::Id,
    IConnectionPoint::Id, IMidiMapping::Id,    IEditController2::Id,
};

/// What stands in the table of @p object at @p slot, called as @p Function.
template <typename Function>
Function Slot(void* object, std::size_t slot)
{
    return reinterpret_cast<Function>((*static_cast<void***>(object))[slot]);
}

TEST(VST3Identity, EveryInterfaceAnswersForEveryOther)
{
    const Instance instance;
    for (const Uid& from : Ids)
    {
        void* start = nullptr;
        ASSERT_EQ(instance.component->queryInterface(from.data(), &start), kResultOk);
        for (const Uid& to : Ids)
        {
            void* direct = nullptr;
            void* found = nullptr;
            instance.component->queryInterface(to.data(), &direct);
            EXPECT_EQ(static_cast<FUnknown*>(start)->queryInterface(to.data(), &found), kResultOk);
            EXPECT_EQ(found, direct);
            instance.component->release();
            instance.component->release();
        }
        instance.component->release();
    }
    void* none = &none;
    EXPECT_EQ(instance.component->queryInterface(IBStream::Id.data(), &none), kNoInterface);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(instance.component->addRef(), 2u);
    EXPECT_EQ(instance.component->release(), 1u);
}

TEST(VST3Identity, TheLastReferenceEndsTheObject)
{
    const int before = MModule::Get().CountUsers();
    {
        const Instance first;
        const Instance second;
        auto* const point = second.Ask<IConnectionPoint>();
        EXPECT_EQ(point->connect(point), kResultOk); // to itself, as hosts do, and for good
        EXPECT_EQ(MModule::Get().CountUsers(), before + 2);
    }
    EXPECT_EQ(MModule::Get().CountUsers(), before);
}

/// The tables are the binary form, so they are called here without any declaration of ours.
TEST(VST3Identity, OperationsLieInTheirSlots)
{
    const Instance instance;
    void* const component = instance.component;
    using WithPointer = Result (*)(void*, void*);
    using Plain = std::int32_t (*)(void*);
    EXPECT_EQ(Slot<WithPointer>(component, 3)(component, nullptr), kResultOk); // initialize
    EXPECT_EQ(Slot<WithPointer>(component, 3)(component, nullptr), kResultFalse);
    using GetBusCount = std::int32_t (*)(void*, std::int32_t, std::int32_t);
    EXPECT_EQ(Slot<GetBusCount>(component, 7)(component, kAudio, kOutput), 1);
    EXPECT_EQ(Slot<WithPointer>(component, 13)(component, nullptr), kInvalidArgument); // getState

    void* const processor = instance.processor;
    using WithNumber = Result (*)(void*, std::int32_t);
    EXPECT_EQ(Slot<WithNumber>(processor, 5)(processor, kSample64), kResultFalse);
    EXPECT_EQ(Slot<Plain>(processor, 10)(processor), 0); // getTailSamples
    using GetArrangement = Result (*)(void*, std::int32_t, std::int32_t, SpeakerArrangement*);
    SpeakerArrangement arrangement = 0;
    EXPECT_EQ(Slot<GetArrangement>(processor, 4)(processor, kInput, 0, &arrangement), kResultTrue);
    EXPECT_EQ(arrangement, SpeakerArr::kStereo);

    void* const controller = instance.controller;
    EXPECT_EQ(Slot<Plain>(controller, 8)(controller), instance.controller->getParameterCount());
    using SetValue = Result (*)(void*, ParamID, double);
    using GetValue = double (*)(void*, ParamID);
    EXPECT_EQ(Slot<SetValue>(controller, 15)(controller, 0x7FFF, 1.0), kResultTrue);
    EXPECT_EQ(Slot<GetValue>(controller, 14)(controller, 0x7FFF), 1.0);
    EXPECT_EQ(Slot<WithPointer>(controller, 17)(controller, nullptr), 0); // createView

    void* const units = instance.Ask<IUnitInfo>();
    EXPECT_EQ(Slot<Plain>(units, 3)(units), 1);
    EXPECT_EQ(Slot<WithNumber>(units, 12)(units, 0), kResultTrue);
    EXPECT_EQ(Slot<WithNumber>(units, 12)(units, 1), kResultFalse);
    EXPECT_EQ(Slot<Plain>(component, 4)(component), kResultOk); // terminate
}

TEST(VST3Identity, FactoryTellsTheClassInEachForm)
{
    PluginFactory& factory = PluginFactory::Get();
    PFactoryInfo maker{};
    PClassInfo2 narrow{};
    PClassInfoW wide{};
    EXPECT_EQ(factory.getFactoryInfo(&maker), kResultOk);
    EXPECT_EQ(factory.getClassInfo2(0, &narrow), kResultOk);
    EXPECT_EQ(factory.getClassInfoUnicode(0, &wide), kResultOk);
    EXPECT_EQ(factory.getClassInfo2(1, &narrow), kInvalidArgument);
    EXPECT_STREQ(maker.vendor, "Quillfern");
    EXPECT_EQ(maker.flags, 16);
    EXPECT_EQ(std::memcmp(narrow.cid.data(), "liuQnrefTnv+Tnv+", 16), 0);
    EXPECT_STREQ(narrow.category, "Audio Module Class");
    EXPECT_STREQ(narrow.subCategories, "Fx|Tools");
    EXPECT_EQ(std::u16string(wide.name), u"Tonvale");
    EXPECT_EQ(std::u16string(wide.sdkVersion), u"VST 3.0.2");

    void* object = &factory;
    EXPECT_NE(factory.createInstance("no class of ours", "no interface yet", &object), kResultOk);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory.createInstance(reinterpret_cast<const char*>(narrow.cid.data()),
                                     "no such interfac", &object),
              kNoInterface);
    EXPECT_EQ(object, nullptr);
}

TEST(VST3Identity, InitializeAndTerminateComeInAnyOrder)
{
    fakehost::Handler handler;
    const Instance instance;
    EXPECT_EQ(instance.component->terminate(), kResultOk);
    for (int round = 0; round < 3; ++round)
    {
        EXPECT_EQ(instance.component->getBusCount(kAudio, kInput), 0);
        EXPECT_EQ(instance.controller->initialize(&handler), kResultOk);
        EXPECT_NE(instance.component->initialize(&handler), kResultOk);
        EXPECT_EQ(instance.controller->setComponentHandler(&handler), kResultOk);
        EXPECT_EQ(instance.component->setActive(0), kResultTrue);
        EXPECT_EQ(instance.component->setActive(1), kResultTrue);
        EXPECT_EQ(instance.component->getBusCount(kEvent, kInput), 1);
        EXPECT_EQ(handler.references, 2u);
        EXPECT_EQ(instance.controller->terminate(), kResultOk);
        EXPECT_EQ(instance.component->terminate(), kResultOk);
        EXPECT_EQ(handler.references, 0u);
    }
    EXPECT_EQ(MModule::Get().GetHostName(), "VST3");
}

} // namespace
