// SPDX-License-Identifier: MIT
#include "tests/device/machine.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <memory>
#include <utility>

#include "tests/device/fault.h"
#include "tests/device/processor.h"

uc_engine* Processor;

namespace
{

constexpr GuestAddress Stacks = 0x20000000, SystemCode = 0x70000000;
constexpr uint32_t StackDistance = 2 * StackBytes; // the lower half of each stays empty
constexpr uint32_t SystemCodeBytes = 0x10000, MostStacks = 64;
constexpr uint32_t ThumbBit = 1, ThumbFlag = 0x20, UserMode = 0x10, ConditionFlags = 0xF0000000;
constexpr uint32_t NowhereToStop = 0xFFFFFFF0;

constexpr int Sp = 13, Lr = 14, Pc = 15, RegisterCount = 16, FirstKept = 4, LastKept = 11;
constexpr int RegisterIds[RegisterCount] = {UC_ARM_REG_R0,  UC_ARM_REG_R1, UC_ARM_REG_R2,  UC_ARM_REG_R3,
                                            UC_ARM_REG_R4,  UC_ARM_REG_R5, UC_ARM_REG_R6,  UC_ARM_REG_R7,
                                            UC_ARM_REG_R8,  UC_ARM_REG_R9, UC_ARM_REG_R10, UC_ARM_REG_R11,
                                            UC_ARM_REG_R12, UC_ARM_REG_SP, UC_ARM_REG_LR,  UC_ARM_REG_PC};

struct Core {
    const char* name;
    int model;
};
constexpr Core Cores[] = {
    {"sa1100", UC_CPU_ARM_SA1100},                                // StrongARM, ARMv4: no BX
    {"sa1110", UC_CPU_ARM_SA1110}, {"ti925t", UC_CPU_ARM_TI925T}, // ARMv4T
    {"926", UC_CPU_ARM_926},                                      // ARMv5TEJ
    {"pxa255", UC_CPU_ARM_PXA255},                                // XScale, ARMv5TE
    {"pxa270", UC_CPU_ARM_PXA270}, {"1136", UC_CPU_ARM_1136},     // ARMv6
};

struct Registers {
    std::array<uint32_t, RegisterCount> r{};
    uint32_t status = UserMode;
};

// A routine that runs on the thread.
struct Frame {
    const char* what;
    const Registers* registers;
    const std::string* systemRoutine; // that it has called, null while it runs itself
};

struct Thread {
    uint32_t number;
    GuestAddress stack; // lowest address
    GuestAddress top;   // stack pointer of what is called next
    GuestAddress lowest;
    uint64_t instructions = 0;
    std::vector<Frame> frames;
};

struct SystemRoutine {
    std::string name;
    std::function<uint64_t(const GuestCall&)> run;
    ResultWidth width;
};

MachineOptions Options;
std::vector<SystemRoutine> SystemRoutines; // the first: where a routine of the program returns to
std::vector<bool> StackTaken;
std::vector<Thread*> Threads;
thread_local std::unique_ptr<Thread> Mine;
Thread* Running; // of those the one whose code the processor runs
ThreadFigures MainFigures, OtherFigures;
std::string FaultText;
GuestAddress LastBlock;
bool Ending;
uint32_t ExitCode, Random;
std::function<std::string(GuestAddress)> Symbolizer;
std::function<void()> BeforeRun;

std::string Hex(uint64_t value)
{
    char text[24];
    std::snprintf(text, sizeof text, "%#llx", static_cast<unsigned long long>(value));
    return text;
}

std::string Place(GuestAddress address)
{
    const std::string symbol = Symbolizer ? Symbolizer(address) : "";
    return Hex(address) + (symbol.empty() ? "" : " (" + symbol + ")");
}

uint32_t NextRandom()
{
    Random ^= Random << 13;
    Random ^= Random >> 17;
    return Random ^= Random << 5;
}

// ---- What the processor reports -----------------------------------------------------------------------

void NoteFault(const std::string& text)
{
    if (FaultText.empty()) FaultText = text;
    uc_emu_stop(Processor);
}

void OnSystemCode(uc_engine*, uint64_t, uint32_t, void*)
{
    uc_emu_stop(Processor);
}

void OnBlock(uc_engine*, uint64_t address, uint32_t size, void*)
{
    LastBlock = static_cast<GuestAddress>(address);
    if (LastBlock < SystemCode) Running->instructions += size / 4;
}

void OnAccess(uc_engine*, uc_mem_type, uint64_t address, int size, int64_t, void*)
{
    const auto place = static_cast<GuestAddress>(address);
    if (place & static_cast<uint32_t>(std::min(size, 4) - 1))
        NoteFault("unaligned access to " + std::to_string(size) + " bytes at " + Hex(place));
    if (place - Running->stack < StackBytes) Running->lowest = std::min(Running->lowest, place);
    if (IsBesideHostMemory(place)) NoteFault("access beside the pixels of a bitmap at " + Hex(place));
}

bool OnInvalid(uc_engine*, uc_mem_type type, uint64_t address, int size, int64_t, void*)
{
    const auto place = static_cast<GuestAddress>(address);
    if (Running->stack - place <= StackBytes)
        NoteFault("the stack is deeper than " + std::to_string(StackBytes) + " bytes");
    else
        NoteFault((type == UC_MEM_WRITE_PROT       ? "write to read-only memory"
                   : type == UC_MEM_WRITE_UNMAPPED ? "write to memory that is not there"
                   : type == UC_MEM_READ_UNMAPPED  ? "read of memory that is not there"
                                                   : "code where none is") +
                  std::string(", ") + std::to_string(size) + " bytes at " + Hex(place));
    return false;
}

// ---- Threads ------------------------------------------------------------------------------------------

Thread& Current()
{
    if (Mine) return *Mine;
    const auto free = std::find(StackTaken.begin(), StackTaken.end(), false);
    const auto number = static_cast<uint32_t>(free - StackTaken.begin());
    if (free == StackTaken.end()) StackTaken.push_back(false);
    if (number >= MostStacks) DeviceFault("too many threads");
    StackTaken[number] = true;
    const GuestAddress stack = Stacks + number * StackDistance + StackBytes;
    if (Threads.size() <= number) {
        MapMemory(stack, StackBytes, Access::ReadWrite);
        Threads.push_back(nullptr);
    }
    std::memset(GuestBytes(stack, StackBytes, Access::ReadWrite), FreshByte, StackBytes);
    const GuestAddress top = stack + StackBytes - Options.stackSkew;
    Mine = std::make_unique<Thread>(Thread{number, stack, top, top, 0, {}});
    Threads[number] = Mine.get();
    return *Mine;
}

void AddTo(ThreadFigures& figures, const Thread& thread)
{
    figures.instructions += thread.instructions;
    figures.stackBytes = std::max(figures.stackBytes, thread.stack + StackBytes - thread.lowest);
}

// The outermost routine of the calling thread has returned.
void LeaveThread()
{
    AddTo(Mine->number == 0 ? MainFigures : OtherFigures, *Mine);
    StackTaken[Mine->number] = false;
    Threads[Mine->number] = nullptr;
    Mine.reset();
}

// ---- Running ------------------------------------------------------------------------------------------

// Lets the program run until it calls the system; returns the number of the routine.
uint32_t Run(Thread& thread, Registers& registers)
{
    Running = &thread;
    if (BeforeRun) BeforeRun();
    uc_reg_write(Processor, UC_ARM_REG_CPSR, &registers.status); // first: it selects the registers' bank
    for (int i = 0; i < RegisterCount; ++i)
        uc_reg_write(Processor, RegisterIds[i], &registers.r[static_cast<size_t>(i)]);
    const bool thumb = (registers.status & ThumbFlag) != 0;
    const uc_err error =
        uc_emu_start(Processor, registers.r[Pc] | (thumb ? ThumbBit : 0), NowhereToStop, 0, 0);
    for (int i = 0; i < RegisterCount; ++i)
        uc_reg_read(Processor, RegisterIds[i], &registers.r[static_cast<size_t>(i)]);
    uc_reg_read(Processor, UC_ARM_REG_CPSR, &registers.status);
    if (!FaultText.empty()) DeviceFault(FaultText);
    if (error != UC_ERR_OK) DeviceFault(uc_strerror(error));

    const uint32_t number = (registers.r[Pc] - SystemCode) / 4;
    if (number >= SystemRoutines.size()) DeviceFault("the program stopped by itself");
    if (((registers.status & ThumbFlag) != 0) != Options.thumbSystem)
        DeviceFault("the system is called in the wrong instruction set");
    return number;
}

void ServeCall(Thread& thread, Registers& registers, const SystemRoutine& routine)
{
    const GuestCall call(registers.r.data(), registers.r[Sp]);
    const GuestAddress top = std::exchange(thread.top, registers.r[Sp]);
    thread.frames.back().systemRoutine = &routine.name;
    const uint64_t result = routine.run(call);
    thread.frames.back().systemRoutine = nullptr;
    thread.top = top;

    for (const size_t i : {1, 2, 3, 12}) registers.r[i] = NextRandom();
    registers.status = (registers.status & ~(ConditionFlags | ThumbFlag)) | (NextRandom() & ConditionFlags);
    registers.r[0] = static_cast<uint32_t>(result);
    if (routine.width == ResultWidth::TwoWords) registers.r[1] = static_cast<uint32_t>(result >> 32);
    registers.r[Pc] = registers.r[Lr] & ~ThumbBit;
    if (registers.r[Lr] & ThumbBit) DeviceFault("the program's code is ARM code, and calls from Thumb code");
}

} // namespace

void Check(uc_err error, const char* what)
{
    if (error != UC_ERR_OK) DeviceFault(std::string(what) + ": " + uc_strerror(error));
}

std::vector<std::string> CoreNames()
{
    std::vector<std::string> names;
    for (const Core& core : Cores) names.push_back(core.name);
    return names;
}

void StartMachine(const MachineOptions& options)
{
    Options = options;
    Random = 2463534242;
    FaultText.clear();
    BeforeRun = nullptr;
    Ending = false;
    MainFigures = OtherFigures = {};
    StackTaken.clear();
    Threads.clear();
    if (Processor) uc_close(Processor);
    UnmapAllMemory();
    Check(uc_open(UC_ARCH_ARM, UC_MODE_ARM, &Processor), "starting the processor");
    const Core* core = std::find_if(std::begin(Cores), std::end(Cores),
                                    [&](const Core& candidate) { return candidate.name == options.core; });
    if (core == std::end(Cores)) DeviceFault("there is no core named " + options.core);
    Check(uc_ctl_set_cpu_model(Processor, core->model), "choosing the core");

    const auto hook = [](int type, void* callback, uint64_t first, uint64_t last) {
        uc_hook handle;
        Check(uc_hook_add(Processor, &handle, type, callback, nullptr, first, last),
              "watching the processor");
    };
    hook(UC_HOOK_CODE, reinterpret_cast<void*>(OnSystemCode), SystemCode, SystemCode + SystemCodeBytes - 1);
    hook(UC_HOOK_BLOCK, reinterpret_cast<void*>(OnBlock), 1, 0);
    hook(UC_HOOK_MEM_READ | UC_HOOK_MEM_WRITE, reinterpret_cast<void*>(OnAccess), 1, 0);
    hook(UC_HOOK_MEM_INVALID, reinterpret_cast<void*>(OnInvalid), 1, 0);
    MapMemory(SystemCode, SystemCodeBytes, Access::ReadExecute);
    SystemRoutines.clear();
    SystemRoutines.push_back({"return", nullptr, ResultWidth::Word});
}

GuestAddress AddSystemRoutine(const std::string& name, std::function<uint64_t(const GuestCall&)> routine,
                              ResultWidth width)
{
    const GuestAddress address = SystemCode + 4 * static_cast<uint32_t>(SystemRoutines.size());
    SystemRoutines.push_back({name, std::move(routine), width});
    return address | (Options.thumbSystem ? ThumbBit : 0);
}

uint32_t CallGuest(GuestAddress routine, std::initializer_list<uint32_t> arguments, const char* what)
{
    Thread& thread = Current();
    Registers registers;
    const uint32_t onStack = arguments.size() > 4 ? static_cast<uint32_t>(arguments.size()) - 4 : 0;
    const GuestAddress stack = thread.top - 4 * onStack;
    for (size_t i = 0; i < RegisterCount; ++i) registers.r[i] = NextRandom();
    const Registers before = registers;
    uint32_t place = 0;
    for (const uint32_t argument : arguments) {
        if (place < 4)
            registers.r[place] = argument;
        else
            StoreGuest(stack + 4 * (place - 4), argument);
        ++place;
    }
    registers.r[Sp] = stack;
    registers.r[Lr] = SystemCode | (Options.thumbSystem ? ThumbBit : 0);
    registers.r[Pc] = routine;

    thread.frames.push_back({what, &registers, nullptr});
    while (const uint32_t number = Run(thread, registers)) {
        ServeCall(thread, registers, SystemRoutines[number]);
        if (!Ending) continue;
        if (thread.frames.size() != 1) DeviceFault("the program ends in the middle of a call by the system");
        Ending = false;
        registers = before;
        registers.r[0] = ExitCode;
        registers.r[Sp] = stack;
        break;
    }
    for (int i = FirstKept; i <= LastKept; ++i)
        if (registers.r[static_cast<size_t>(i)] != before.r[static_cast<size_t>(i)])
            DeviceFault(std::string(what) + " has not preserved r" + std::to_string(i));
    if (registers.r[Sp] != stack) DeviceFault(std::string(what) + " has not preserved the stack pointer");
    thread.frames.pop_back();
    if (thread.frames.empty()) LeaveThread();
    return registers.r[0];
}

double GuestCall::Double(uint32_t index) const
{
    return std::bit_cast<double>(Word(index) | uint64_t{Word(index + 1)} << 32);
}

void SetBeforeRun(std::function<void()> step)
{
    BeforeRun = std::move(step);
}

void EndProgram(uint32_t exitCode)
{
    Ending = true;
    ExitCode = exitCode;
}

ThreadFigures MainThreadFigures()
{
    ThreadFigures figures = MainFigures;
    for (const Thread* thread : Threads)
        if (thread && thread->number == 0) AddTo(figures, *thread);
    return figures;
}

ThreadFigures OtherThreadFigures()
{
    ThreadFigures figures = OtherFigures;
    for (const Thread* thread : Threads)
        if (thread && thread->number != 0) AddTo(figures, *thread);
    return figures;
}

std::string WhereTheProgramIs()
{
    if (!Mine) return "";
    std::string text;
    for (auto frame = Mine->frames.rbegin(); frame != Mine->frames.rend(); ++frame) {
        text += "  in " + std::string(frame->what);
        if (frame->systemRoutine)
            text += ", which has called " + *frame->systemRoutine + " from " + Place(frame->registers->r[Lr]);
        else if (frame == Mine->frames.rbegin())
            text += ", at " + Place(frame->registers->r[Pc]) + ", block " + Place(LastBlock) +
                    ", called from " + Place(frame->registers->r[Lr]);
        text += "\n";
    }
    return text;
}

void SetSymbolizer(std::function<std::string(GuestAddress)> symbolizer)
{
    Symbolizer = std::move(symbolizer);
}
