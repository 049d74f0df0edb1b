/// Functions of other modules: missing, half there, there, and gone; and the component table. A
/// forwarder keeps what it has found for as long as the process lives, so each is used by one test.
#include <functional>

#include "printed_test.h"
#include "support/temp_folder.h"

namespace {

using test::narrow;
using test::wide;

constexpr const kz_Char* kStart = KZ_T("KZ_START");
constexpr const kz_Char* kCad = KZ_T("KZ_CADSERVICE");

class Services : public test::PrintedTest {
  protected:
    void SetUp() override {
        PrintedTest::SetUp();
        ASSERT_FALSE(acrxServiceIsRegistered(kStart) || acrxServiceIsRegistered(kCad))
            << "these tests need a process without the suite's modules";
    }
    void TearDown() override {
        acrxUnregisterService(kStart);
        acrxUnregisterService(kCad);
        kz_Msg_setCatalogue(nullptr);
        PrintedTest::TearDown();
    }
};

TEST_F(Services, RegistryKeepsSymbolsByServiceAndName) {
    int first = 0;
    int second = 0;
    EXPECT_FALSE(acrxRegisterSymbol(kCad, KZ_T("a"), &first));
    EXPECT_TRUE(acrxRegisterService(kCad));
    EXPECT_FALSE(acrxRegisterService(kCad));
    EXPECT_TRUE(acrxRegisterSymbol(kCad, KZ_T("a"), &first));
    EXPECT_EQ(acrxGetServiceSymbolAddr(kCad, KZ_T("a")), &first);
    EXPECT_EQ(acrxGetServiceSymbolAddr(kCad, KZ_T("A")), nullptr);
    EXPECT_EQ(acrxGetServiceSymbolAddr(kStart, KZ_T("a")), nullptr);
    EXPECT_TRUE(acrxRegisterSymbol(kCad, KZ_T("a"), &second));
    EXPECT_EQ(acrxGetServiceSymbolAddr(kCad, KZ_T("a")), &second);
    EXPECT_TRUE(acrxUnregisterService(kCad));
    EXPECT_FALSE(acrxUnregisterService(kCad));
    EXPECT_TRUE(acrxRegisterService(kCad));
    EXPECT_EQ(acrxGetServiceSymbolAddr(kCad, KZ_T("a")), nullptr);
    for (const kz_Char* none : {KZ_T(""), static_cast<const kz_Char*>(nullptr)}) {
        EXPECT_FALSE(acrxRegisterService(none));
        EXPECT_FALSE(acrxServiceIsRegistered(none));
        EXPECT_FALSE(acrxUnregisterService(none));
        EXPECT_FALSE(acrxRegisterSymbol(kCad, none, &first));
        EXPECT_EQ(acrxGetServiceSymbolAddr(kCad, none), nullptr);
        EXPECT_EQ(acrxGetServiceSymbolAddr(none, KZ_T("a")), nullptr);
    }
    EXPECT_FALSE(acrxRegisterSymbol(kCad, KZ_T("b"), nullptr));
}

struct Resolver {
    const char* name;
    void* (*get)(const kz_Char* symbol);
    const kz_Char* service;
};
const Resolver kResolvers[] = {
    {"kz_EnvFuncPtr_get", kz_EnvFuncPtr_get, kStart},
    {"kz_CADFuncPtr_get", kz_CADFuncPtr_get, kCad},
    {"kz_CoordFuncPtr_get", kz_CoordFuncPtr_get, kCad},
    {"kz_GroupFuncPtr_get", kz_GroupFuncPtr_get, kCad},
};

TEST_F(Services, ResolversSayWhatIsMissing) {
    for (const Resolver& resolver : kResolvers) {
        const std::string name = std::string("\n") + resolver.name + ": ";
        const std::string service = narrow(resolver.service);
        EXPECT_EQ(resolver.get(KZ_T("100%s")), nullptr);
        EXPECT_EQ(printed(), name + service + " service not loaded.\n");
        acrxRegisterService(resolver.service);
        EXPECT_EQ(resolver.get(KZ_T("100%s")), nullptr);
        EXPECT_EQ(printed(), name + "100%s not registered in service " + service + ".\n");
        int target = 0;
        acrxRegisterSymbol(resolver.service, KZ_T("100%s"), &target);
        EXPECT_EQ(resolver.get(KZ_T("100%s")), &target);
        EXPECT_EQ(printed(), "");
        acrxUnregisterService(resolver.service);
    }
}

TEST_F(Services, LinesAreTranslatedUnderTheirOwnFamilies) {
    const TempFolder folder;
    std::string catalogue;
    for (const Resolver& resolver : kResolvers) {
        for (const char* family : {"TOOL", "CAD"}) {
            const std::string start = std::string(family) + '|' + resolver.name;
            catalogue += start + ": %s service not loaded.=" + family + " %s\n";
            catalogue += start + ": %s not registered in service %s.=" + family + " %s %s\n";
        }
    }
    kz_Msg_setCatalogue(wide(folder.write("messages", catalogue)).c_str());
    std::string lines;
    for (const Resolver& resolver : kResolvers) {
        resolver.get(KZ_T("f"));
        acrxRegisterService(resolver.service);
        resolver.get(KZ_T("f"));
        acrxUnregisterService(resolver.service);
    }
    EXPECT_EQ(printed(),
              "\nkz_EnvFuncPtr_get: KZ_START service not loaded.\n\nTOOL f KZ_START\n"
              "\nCAD KZ_CADSERVICE\n\nCAD f KZ_CADSERVICE\n"
              "\nTOOL KZ_CADSERVICE\n\nTOOL f KZ_CADSERVICE\n"
              "\nTOOL KZ_CADSERVICE\n\nTOOL f KZ_CADSERVICE\n");
}

int isEnabled(void* reactor) {
    return *static_cast<int*>(reactor);
}

TEST_F(Services, AForwarderFindsAServiceThatComesLaterAndKeepsIt) {
    int reactor = 42;
    for (int call = 0; call < 2; ++call) {
        EXPECT_EQ(kz_Reactor_isEnabled(&reactor), 0);
        EXPECT_EQ(printed(), "\nkz_GroupFuncPtr_get: KZ_CADSERVICE service not loaded.\n");
    }
    acrxRegisterService(kCad);
    EXPECT_EQ(kz_Reactor_isEnabled(&reactor), 0);
    EXPECT_EQ(printed(),
              "\nkz_GroupFuncPtr_get: kz_Reactor_isEnabled not registered in service "
              "KZ_CADSERVICE.\n");
    acrxRegisterSymbol(kCad, KZ_T("kz_Reactor_isEnabled"), reinterpret_cast<void*>(&isEnabled));
    EXPECT_EQ(kz_Reactor_isEnabled(&reactor), 42);
    acrxUnregisterService(kCad);
    EXPECT_EQ(kz_Reactor_isEnabled(&reactor), 42);
    EXPECT_EQ(printed(), "");
}

TEST_F(Services, RemovingAReactorIsSilentWithoutTheService) {
    int reactor = 9;
    EXPECT_EQ(kz_Reactor_remove(&reactor), 0);
    EXPECT_EQ(printed(), "");
    acrxRegisterService(kCad);
    EXPECT_EQ(kz_Reactor_remove(&reactor), 0);
    EXPECT_EQ(printed(),
              "\nkz_GroupFuncPtr_get: kz_Reactor_remove not registered in service "
              "KZ_CADSERVICE.\n");
    acrxRegisterSymbol(kCad, KZ_T("kz_Reactor_remove"), reinterpret_cast<void*>(&isEnabled));
    EXPECT_EQ(kz_Reactor_remove(&reactor), 9);
    acrxUnregisterService(kCad);
    EXPECT_EQ(kz_Reactor_remove(&reactor), 0);
    EXPECT_EQ(printed(), "");
}

// --- arguments and results of the forwarders -----------------------------------------------------

std::string received;

template <class T>
std::string show(T value) {
    if constexpr (std::is_pointer_v<T>) {
        return std::to_string(reinterpret_cast<uintptr_t>(value));
    } else {
        return std::to_string(value);
    }
}

/// Some value of the type, as wide as the type.
template <class T>
T someValue(int salt) {
    if constexpr (std::is_pointer_v<T>) {
        return reinterpret_cast<T>((uintptr_t{0x7FFF} << 32) + static_cast<uintptr_t>(salt));
    } else {
        return static_cast<T>(-1000000 - salt);
    }
}

/// A function of a module; `Number` makes it one of its own for each symbol.
template <int Number, class Result, class... Args>
Result moduleFunction(Args... args) {
    received = std::to_string(Number);
    ((received += ' ' + show(args)), ...);
    if constexpr (!std::is_void_v<Result>) return someValue<Result>(Number);
}

struct Row {
    const kz_Char* symbol;
    const Resolver* resolver;
    void* function;
    std::function<std::string()> call;  ///< gives the result as text
    std::string arguments;              ///< what the module's function is to receive
    std::string result;                 ///< what it gives
};

template <int Number, class Result, class... Args>
Row makeRow(const kz_Char* symbol, const Resolver& resolver, Result (*forwarder)(Args...)) {
    Row row{symbol, &resolver, nullptr, nullptr, std::to_string(Number), ""};
    row.function = reinterpret_cast<void*>(&moduleFunction<Number, Result, Args...>);
    [[maybe_unused]] int salt = 0;
    [[maybe_unused]] const auto next = [&salt] { return ++salt; };
    const std::tuple<Args...> args{someValue<Args>(next())...};
    std::apply([&row](auto... arg) { ((row.arguments += ' ' + show(arg)), ...); }, args);
    row.call = [forwarder, args]() -> std::string {
        if constexpr (std::is_void_v<Result>) {
            std::apply(forwarder, args);
            return "";
        } else {
            return show(std::apply(forwarder, args));
        }
    };
    if constexpr (!std::is_void_v<Result>) row.result = show(someValue<Result>(Number));
    return row;
}

TEST_F(Services, EveryForwarderPassesOnWhatItIsGiven) {
    const auto& [env, cad, coordinates, group] = kResolvers;
    const Row rows[] = {
        makeRow<1>(KZ_T("kz_Env_getSes"), env, kz_Env_getSes_stub),
        makeRow<2>(KZ_T("kz_Env_setSes"), env, kz_Env_setSes_stub),
        makeRow<3>(KZ_T("kz_Env_resetSes"), env, kz_Env_resetSes_stub),
        makeRow<4>(KZ_T("kz_CAD_getAttachedDrawings"), cad, kz_CAD_getAttachedDrawings),
        makeRow<5>(KZ_T("kz_CommandReactor_create"), group, kz_CommandReactor_create),
        makeRow<6>(KZ_T("kz_CommandReactor_setExternalDwgPath"), group,
                   kz_CommandReactor_setExternalDwgPath),
        makeRow<7>(KZ_T("kz_Group_createReactor"), group, kz_Group_createReactor),
        makeRow<8>(KZ_T("kz_Group_disableMasterEntReactor"), group,
                   kz_Group_disableMasterEntReactor),
        makeRow<9>(KZ_T("kz_Group_restoreMasterEntReactor"), group,
                   kz_Group_restoreMasterEntReactor),
        makeRow<10>(KZ_T("kz_Reactor_disable"), group, kz_Reactor_disable),
        makeRow<11>(KZ_T("kz_Reactor_enable"), group, kz_Reactor_enable),
        makeRow<12>(KZ_T("kz_Reactor_removeAll"), group, kz_Reactor_removeAll),
        makeRow<13>(KZ_T("kz_TagsReactor_create"), group, kz_TagsReactor_create),
    };
    acrxRegisterService(kStart);
    acrxRegisterService(kCad);
    for (const Row& row : rows) {
        const std::string nothing = row.result.empty() ? "" : "0";
        EXPECT_EQ(row.call(), nothing) << narrow(row.symbol);
        EXPECT_EQ(printed(), std::string("\n") + row.resolver->name + ": " + narrow(row.symbol) +
                                 " not registered in service " + narrow(row.resolver->service) +
                                 ".\n");
    }
    for (const Row& row : rows)
        acrxRegisterSymbol(row.resolver->service, row.symbol, row.function);
    for (int round = 0; round < 2; ++round) {
        for (const Row& row : rows) {
            received.clear();
            EXPECT_EQ(row.call(), row.result) << narrow(row.symbol);
            EXPECT_EQ(received, row.arguments) << narrow(row.symbol);
        }
    }
    EXPECT_EQ(printed(), "");
}

TEST_F(Services, ValuesOfTheDrawingAreClosedOff) {
    EXPECT_EQ(kz_Env_getDwg(KZ_T("NAME")), nullptr);
    EXPECT_EQ(printed(), "\nkz_Env_getDwg is not currently functional.");
    EXPECT_EQ(kz_Env_getDwg(nullptr), nullptr);
    EXPECT_EQ(printed(), "\nkz_Env_getDwg is not currently functional.");
    EXPECT_EQ(kz_Env_setDwg(KZ_T("NAME"), nullptr), 0);
    EXPECT_EQ(printed(), "\nkz_Env_setDwg is not currently functional.");
}

void* component(const kz_Char* name) {
    void* found = nullptr;
    GetComponent(&found, name);
    return found;
}

TEST(ComponentTable, TheNewestOfEqualNamesIsFound) {
    void* const none = reinterpret_cast<void*>(intptr_t{-1});
    int first = 0;
    int second = 0;
    TableInitialize();
    EXPECT_EQ(component(KZ_T("PUMP")), none);
    AddComponent(&first, KZ_T("PUMP"));
    AddComponent(nullptr, KZ_T("NOTHING"));
    AddComponent(&second, KZ_T("PUMP"));
    EXPECT_EQ(component(KZ_T("PUMP")), &second);
    EXPECT_EQ(component(KZ_T("NOTHING")), nullptr);
    EXPECT_EQ(component(KZ_T("pump")), none);
    EXPECT_EQ(component(KZ_T("PUM")), none);
    EXPECT_EQ(component(nullptr), none);
    TableFinalize();
    EXPECT_EQ(component(KZ_T("PUMP")), none);
    TableFinalize();
}

TEST(ComponentTable, NamesAreCutAt259Characters) {
    int value = 0;
    const std::u16string longest(259, u'n');
    AddComponent(&value, (longest + u"x").c_str());
    EXPECT_EQ(component(longest.c_str()), &value);
    EXPECT_NE(component((longest + u"x").c_str()), &value);
    TableFinalize();
}

TEST(ComponentTable, WithoutMemoryNothingIsAdded) {
    int value = 0;
    kz_Malloc_failFrom(1);
    AddComponent(&value, KZ_T("PUMP"));
    kz_Malloc_failFrom(0);
    EXPECT_NE(component(KZ_T("PUMP")), &value);
}

}  // namespace
