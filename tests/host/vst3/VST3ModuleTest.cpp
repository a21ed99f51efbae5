#include <vector>

#include <gtest/gtest.h>

#include "foundation/modules/MLibrary.h"
#include "host/vst3/Vst3Component.h"
#include "host/vst3/Vst3Factory.h"

using namespace Vst3;

namespace
{

/// The built module, known by its symbols alone.
struct Module
{
    MLibrary library{TONVALE_VST3_MODULE};
    bool (*enter)(void*) = library.Find<bool (*)(void*)>("ModuleEntry");
    bool (*leave)() = library.Find<bool (*)()>("ModuleExit");
    IPluginFactory* (*getFactory)() = library.Find<IPluginFactory* (*)()>("GetPluginFactory");
};

/// @p count instances at once, which end in the order in which they came.
void UseInstances(IPluginFactory& factory, int count)
{
    PClassInfo info{};
    ASSERT_EQ(factory.getClassInfo(0, &info), kResultOk);
    std::vector<IComponent*> instances(static_cast<std::size_t>(count));
    for (IComponent*& instance : instances)
    {
        void* object = nullptr;
        ASSERT_EQ(factory.createInstance(reinterpret_cast<const char*>(info.cid.data()),
                                         reinterpret_cast<const char*>(IComponent::Id.data()),
                                         &object),
                  kResultOk);
        instance = static_cast<IComponent*>(object);
        EXPECT_EQ(instance->initialize(nullptr), kResultOk);
        EXPECT_EQ(instance->setActive(1), kResultTrue);
    }
    for (IComponent* const instance : instances)
        EXPECT_EQ(instance->release(), 0u);
}

TEST(VST3Module, CountsEntriesAndIsGoneWhenUnloaded)
{
    for (int load = 0; load < 3; ++load)
    {
        const Module module;
        ASSERT_NE(module.getFactory, nullptr);
        EXPECT_EQ(module.library.Find<void (*)()>("_ZN12MAudioPluginC2Ev"), nullptr);
        // An entry of the load before that were still counted would show here.
        EXPECT_FALSE(module.leave());
        EXPECT_TRUE(module.enter(module.library.GetHandle()));
        EXPECT_TRUE(module.enter(module.library.GetHandle()));
        IPluginFactory* const factory = module.getFactory();
        EXPECT_EQ(module.getFactory(), factory);
        UseInstances(*factory, 3);
        EXPECT_EQ(factory->release(), 1u);
        EXPECT_EQ(factory->release(), 0u);
        EXPECT_TRUE(module.leave());
    }
}

} // namespace
