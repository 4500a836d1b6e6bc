// SPDX-License-Identifier: MIT
// The emulated processor and its memory, with a few instructions written by hand.
#include "tests/device/machine.h"

#include <gtest/gtest.h>

#include <thread>

#include "tests/device/fault.h"
#include "tests/device/structures.h"

namespace
{

constexpr GuestAddress Code = 0x10000, Data = 0x20000, Constants = 0x30000;
constexpr uint32_t Return = 0xE1A0F00E;                           // mov pc, lr
constexpr uint32_t SaveLr = 0xE92D4010, ReturnSaved = 0xE8BD8010; // push {r4, lr}; pop {r4, pc}

class Machine : public testing::TestWithParam<std::string>
{
protected:
    Machine() { Start({GetParam(), 0, false}); }

    void Start(const MachineOptions& options)
    {
        StartMachine(options);
        Program = MapMemory(Code, PageBytes, Access::ReadExecute);
        MapMemory(Data, PageBytes, Access::ReadWrite);
        MapMemory(Constants, PageBytes, Access::Read);
        Place = 0;
    }

    // Adds a routine to the program.
    GuestAddress Add(std::initializer_list<uint32_t> words)
    {
        const GuestAddress routine = Code + Place;
        for (const uint32_t word : words) {
            std::memcpy(Program + Place, &word, 4);
            Place += 4;
        }
        return routine;
    }

    // A routine that calls another address with its own arguments.
    GuestAddress AddCallOf(GuestAddress address)
    {
        return Add({SaveLr, 0xE59FC008, // ldr ip, [pc, #8]
                    0xE1A0E00F,         // mov lr, pc
                    0xE1A0F00C,         // mov pc, ip
                    ReturnSaved, address});
    }

    uint8_t* Program = nullptr;
    uint32_t Place = 0;
};
INSTANTIATE_TEST_SUITE_P(Cores, Machine, testing::ValuesIn(CoreNames()),
                         [](const auto& core) { return core.param; });

// Adds up six arguments, weighted by 1 to 32.
constexpr std::initializer_list<uint32_t> WeightedSum = {
    0xE0800081,             // add r0, r0, r1, lsl #1
    0xE0800102,             // add r0, r0, r2, lsl #2
    0xE0800183,             // add r0, r0, r3, lsl #3
    0xE59DC000, 0xE080020C, // ldr ip, [sp]; add r0, r0, ip, lsl #4
    0xE59DC004, 0xE080028C, // ldr ip, [sp, #4]; add r0, r0, ip, lsl #5
    Return};

TEST_P(Machine, PassesArgumentsInRegistersAndOnTheStack)
{
    EXPECT_EQ(CallGuest(Add(WeightedSum), {1, 1, 1, 1, 1, 1}, "sum"), 63u);
    EXPECT_EQ(CallGuest(Code, {1, 0, 2, 0, 3, 4}, "sum"), 1u + 8 + 48 + 128);
}

TEST_P(Machine, ServesCallsAndReadsTheirArguments)
{
    const GuestAddress routine = AddSystemRoutine("Sum", [](const GuestCall& call) {
        return call.Word(0) + 10 * call.Word(1) + 100 * call.Word(2) + 1000 * call.Word(3);
    });
    EXPECT_EQ(CallGuest(AddCallOf(routine), {1, 2, 3, 4}, "caller"), 4321u);
}

TEST_P(Machine, SixtyFourBitArgumentsFollowOddWords)
{
    double seen = 0;
    const GuestAddress routine = AddSystemRoutine(
        "Double",
        [&](const GuestCall& call) {
            seen = call.Double(1);
            return uint64_t{0x0000000200000001};
        },
        ResultWidth::TwoWords);
    // The result's second word comes back in r1: returned in r0.
    const GuestAddress caller =
        Add({SaveLr, 0xE59FC00C, 0xE1A0E00F, 0xE1A0F00C, 0xE1A00001, ReturnSaved, routine});
    EXPECT_EQ(CallGuest(caller, {7, 0, 0x3FF80000}, "caller"), 2u); // 1.5
    EXPECT_EQ(seen, 1.5);
}

TEST_P(Machine, RoutinesOfBothSidesNest)
{
    const GuestAddress sum = Add(WeightedSum);
    int depth = 0;
    GuestAddress caller = 0;
    const GuestAddress routine = AddSystemRoutine("Nest", [&](const GuestCall& call) -> uint64_t {
        if (++depth < 10) return 1 + CallGuest(caller, {call.Word(0)}, "caller");
        return CallGuest(sum, {call.Word(0), 0, 0, 0, 0, 0}, "sum");
    });
    caller = AddCallOf(routine);
    EXPECT_EQ(CallGuest(caller, {5}, "caller"), 14u);
    EXPECT_EQ(MainThreadFigures().stackBytes, 10 * 8u + 8u);
}

TEST_P(Machine, TheSystemLeavesNothingInScratchRegisters)
{
    const GuestAddress routine = AddSystemRoutine("Nothing", [](const GuestCall&) { return uint64_t{0}; });
    const GuestAddress caller =
        Add({SaveLr, 0xE3A02000, 0xE59FC00C,                             // mov r2, #0; ldr ip, [pc, #12]
             0xE1A0E00F, 0xE1A0F00C, 0xE1A00002, ReturnSaved, routine}); // ...; mov r0, r2
    EXPECT_NE(CallGuest(caller, {}, "caller"), 0u);
}

TEST_P(Machine, EachThreadHasAStackOfItsOwn)
{
    const GuestAddress stackPointer = Add({0xE1A0000D, Return}); // mov r0, sp
    const GuestAddress routine = AddSystemRoutine("Other", [&](const GuestCall&) {
        uint32_t other = 0;
        std::thread([&] { other = CallGuest(stackPointer, {}, "thread"); }).join();
        return other;
    });
    const uint32_t mine = CallGuest(stackPointer, {}, "main");
    const uint32_t other = CallGuest(AddCallOf(routine), {}, "caller");
    EXPECT_GE(other - mine, StackBytes);
}

TEST_P(Machine, CountsInstructionsAndStack)
{
    CallGuest(Add({SaveLr, SaveLr, 0xE28DD008, ReturnSaved}), {}, "four"); // add sp, sp, #8
    EXPECT_EQ(MainThreadFigures().instructions, 4u);
    EXPECT_EQ(MainThreadFigures().stackBytes, 16u);
    EXPECT_EQ(OtherThreadFigures().instructions, 0u);
}

TEST_P(Machine, StacksCanBeginAtFourModuloEight)
{
    const std::initializer_list<uint32_t> stackPointer = {0xE1A0000D, Return};
    EXPECT_EQ(CallGuest(Add(stackPointer), {}, "main") % 8, 0u);
    Start({GetParam(), 4, false});
    EXPECT_EQ(CallGuest(Add(stackPointer), {}, "main") % 8, 4u);
}

TEST_P(Machine, TheProgramEndsWithACode)
{
    const GuestAddress routine = AddSystemRoutine("End", [](const GuestCall& call) -> uint64_t {
        EndProgram(call.Word(0));
        return 0;
    });
    EXPECT_EQ(CallGuest(AddCallOf(routine), {42}, "entry"), 42u);
}

TEST_P(Machine, HeapMemoryIsFreshAndFreedOnce)
{
    const GuestAddress memory = AllocateGuest(6), next = AllocateGuest(1);
    EXPECT_EQ(LoadGuest<uint16_t>(memory + 4), 0xDDDD);
    EXPECT_GE(next, memory + 6);
    EXPECT_EQ(memory % 4, 0u);
    StoreGuest(memory, 1u);
    FreeGuest(memory);
    EXPECT_EQ(LoadGuest<uint32_t>(memory), 0xDDDDDDDD);
    EXPECT_EQ(GuestAllocationCount(), 1u);
    EXPECT_EXIT(FreeGuest(memory), testing::ExitedWithCode(FaultExitCode), "freed before");
}

TEST_P(Machine, TheProgramSeesMemoryOfTheHost)
{
    alignas(8) uint32_t pixels[3] = {1, 2, 3};
    const GuestAddress visible = MapHostMemory(&pixels[1], 4);
    // ldr r1, [r0]; add r1, r1, #5; str r1, [r0]; mov r0, #0
    const GuestAddress routine = Add({0xE5901000, 0xE2811005, 0xE5801000, 0xE3A00000, Return});
    CallGuest(routine, {visible}, "adder");
    EXPECT_EQ(pixels[1], 7u);
    EXPECT_EXIT(CallGuest(routine, {visible + 4}, "adder"), testing::ExitedWithCode(FaultExitCode),
                "beside the pixels");
    UnmapHostMemory(visible);
    EXPECT_EXIT(CallGuest(routine, {visible}, "adder"), testing::ExitedWithCode(FaultExitCode), "not there");
}

// ---- What a device does not forgive -------------------------------------------------------------------

struct FaultCase {
    const char* name;
    std::vector<uint32_t> words;
    std::vector<uint32_t> arguments; // at most two
    const char* message;
};

const FaultCase Faults[] = {
    {"a word at an odd address", {0xE5900000, Return}, {Data + 2}, "unaligned access to 4 bytes at 0x20002"},
    {"a word written there", {0xE5810000, Return}, {0, Data + 1}, "unaligned access to 4 bytes"},
    {"a halfword at an odd address", {0xE1D000B0, Return}, {Data + 1}, "unaligned access to 2 bytes"},
    {"several registers from there", {0xE8900006, Return}, {Data + 2}, "unaligned access"},
    {"a write to a constant", {0xE5810000, Return}, {0, Constants}, "write to read-only memory"},
    {"a write to code", {0xE5810000, Return}, {0, Code}, "write to read-only memory"},
    {"a read by a null pointer", {0xE5900000, Return}, {0}, "read of memory that is not there"},
    {"a write by a null pointer", {0xE5810000, Return}, {0, 4}, "write to memory that is not there"},
    {"a jump to nowhere", {0xE1A0F000}, {0x1000}, "code where none is"},
    {"an endless recursion", {SaveLr, 0xEBFFFFFD}, {}, "the stack is deeper than 65536 bytes"},
    {"r4 not preserved", {0xE3A04000, Return}, {}, "has not preserved r4"},
    {"r11 not preserved", {0xE3A0B000, Return}, {}, "has not preserved r11"},
    {"the stack pointer not preserved", {0xE24DD004, Return}, {}, "has not preserved the stack pointer"},
    {"an instruction that no core has", {0xE7F000F0}, {}, "in routine, at"},
};

TEST_P(Machine, FaultsEndTheRun)
{
    for (const FaultCase& row : Faults) {
        SCOPED_TRACE(row.name);
        Start({GetParam(), 0, false});
        for (const uint32_t word : row.words) Add({word});
        const uint32_t first = row.arguments.empty() ? 0 : row.arguments[0];
        const uint32_t second = row.arguments.size() < 2 ? 0 : row.arguments[1];
        EXPECT_EXIT(CallGuest(Code, {first, second}, "routine"), testing::ExitedWithCode(FaultExitCode),
                    row.message);
    }
}

TEST_P(Machine, TheSystemIsHeldToTheSameMemory)
{
    const auto ends = testing::ExitedWithCode(FaultExitCode);
    EXPECT_EXIT(StoreGuest(Constants, 1u), ends, "write to read-only memory");
    EXPECT_EXIT(GuestBytes(Data + PageBytes - 2, 4, Access::Read), ends, "is not 4 bytes of memory");
    EXPECT_EXIT(LoadGuestText(0), ends, "is not 2 bytes of memory");
}

TEST_P(Machine, TheProgramCannotEndWithinACallback)
{
    const GuestAddress end = AddSystemRoutine("End", [](const GuestCall&) -> uint64_t {
        EndProgram(0);
        return 0;
    });
    const GuestAddress inner = AddCallOf(end);
    const GuestAddress outer = AddSystemRoutine(
        "Outer", [&](const GuestCall&) -> uint64_t { return CallGuest(inner, {}, "callback"); });
    EXPECT_EXIT(CallGuest(AddCallOf(outer), {}, "entry"), testing::ExitedWithCode(FaultExitCode),
                "in the middle of a call");
}

// StrongARM knows neither BX nor CLZ, which the later cores do.
TEST(MachineCores, OldCoresRefuseNewInstructions)
{
    struct Row {
        const char* core;
        uint32_t instruction;
        bool knows;
    };
    constexpr uint32_t Bx = 0xE12FFF1E, Clz = 0xE16F0F10;
    for (const Row& row : {Row{"sa1100", Bx, false}, Row{"sa1110", Bx, false}, Row{"ti925t", Bx, true},
                           Row{"sa1110", Clz, false}, Row{"ti925t", Clz, false}, Row{"pxa255", Clz, true}}) {
        SCOPED_TRACE(std::string(row.core) + " " + std::to_string(row.instruction));
        StartMachine({row.core, 0, false});
        uint8_t* const code = MapMemory(Code, PageBytes, Access::ReadExecute);
        const uint32_t words[] = {row.instruction, Return};
        std::memcpy(code, words, sizeof words);
        if (row.knows)
            CallGuest(Code, {0}, "routine");
        else
            EXPECT_EXIT(CallGuest(Code, {0}, "routine"), testing::ExitedWithCode(FaultExitCode),
                        "in routine");
    }
}

TEST(MachineCores, SystemRoutinesCanBeThumbCode)
{
    StartMachine({"926", 0, true});
    uint8_t* const code = MapMemory(Code, PageBytes, Access::ReadExecute);
    const GuestAddress routine = AddSystemRoutine("Seven", [](const GuestCall&) { return uint64_t{7}; });
    EXPECT_EQ(routine % 2, 1u);
    // push {lr}; ldr ip, [pc, #8]; mov lr, pc; bx ip; pop {ip}; bx ip
    const uint32_t words[] = {0xE52DE004, 0xE59FC00C, 0xE1A0E00F, 0xE12FFF1C,
                              0xE49DC004, 0xE12FFF1C, routine};
    std::memcpy(code, words, sizeof words);
    EXPECT_EQ(CallGuest(Code, {}, "caller"), 7u);
    const uint32_t wrongReturn[] = {Return}; // stays in the instruction set
    std::memcpy(code + 0x100, wrongReturn, sizeof wrongReturn);
    EXPECT_EXIT(CallGuest(Code + 0x100, {}, "caller"), testing::ExitedWithCode(FaultExitCode),
                "wrong instruction set");
}

// ---- Structures ---------------------------------------------------------------------------------------

TEST(Structures, MembersAddUpToTheKnownSizes)
{
    for (const StructureLayout* layout : StructureLayouts) {
        std::vector<std::byte> host(layout->hostSize);
        StructureWalk walk(Direction::Measure, 0, nullptr);
        layout->walk(walk, host.data());
        EXPECT_EQ(walk.Size(), layout->guestSize) << layout->hostSize;
    }
}

TEST(Structures, AreReadAndWrittenInTheDevicesLayout)
{
    StartMachine({});
    MapMemory(Data, PageBytes, Access::ReadWrite);
    const uint32_t words[] = {0x10010, WM_TIMER, 0xFFFFFFFE, 0xFFFFFFFD, 5, 6, 7};
    for (uint32_t i = 0; i < 7; ++i) StoreGuest(Data + 4 * i, words[i]);
    MSG message = {};
    StructureWalk reading(Direction::ToHost, Data, nullptr);
    Walk(reading, message);
    EXPECT_EQ(message.hwnd, reinterpret_cast<HWND>(0x10010));
    EXPECT_EQ(message.wParam, 0xFFFFFFFEu);
    EXPECT_EQ(message.lParam, -3);
    EXPECT_EQ(message.pt.y, 7);
    message.lParam = -4;
    StructureWalk writing(Direction::ToGuest, Data, nullptr);
    Walk(writing, message);
    EXPECT_EQ(LoadGuest<uint32_t>(Data + 8), 0xFFFFFFFE);
    EXPECT_EQ(LoadGuest<uint32_t>(Data + 12), 0xFFFFFFFC);
}

} // namespace
