// SPDX-License-Identifier: MIT
// The conversion of a call of the program to a call of the platform: the kind of each argument and of the
// result. One Signature is one row of the tables in system_calls.cpp.
#pragma once

#include <array>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "tests/device/machine.h"
#include "tests/device/structures.h"

enum class Kind : uint8_t {
    Number, // unsigned, or a code of 32 bits
    Signed,
    Handle,           // -1 has a meaning
    Null,             // nothing else is supported
    Text,             // up to its terminator, may be null or the number of a resource
    CountedText,      // its length in the argument with the number `other`, -1: up to its terminator
    TextPlace,        // for a text, capacity in the argument `other`
    TextPlaceInBytes, // the same, capacity in bytes
    TextPlaceForPath, // the same, of MAX_PATH characters
    TextPlaceCountAt, // the same, `other` is a pointer to the capacity
    Shared,           // to `size` bytes that both sides see alike, may be null
    SharedToRead,     // the same, may be read-only
    Bytes,            // to bytes; their number is the argument `other`
    BytesToRead,      // the same, may be read-only
    HandlePlace,      // for a handle
    Structure,        // of another layout, read before and written after the call
    StructureToRead,
    WindowProcedure,
    ThreadProcedure,
    Message, // a message, and then its two parameters
    WParam,
    LParam,
};

struct Argument {
    Kind kind;
    uint32_t other = 0, size = 0;
    const StructureLayout* structure = nullptr;
};

enum class Result : uint8_t { None, Number, Signed, Handle };

constexpr uint32_t MostArguments = 12;

struct Signature {
    const char* name;
    Result result;
    uint64_t (*call)(const uint64_t* arguments, FARPROC target);
    uint32_t count;
    std::array<Argument, MostArguments> arguments;
};

// Makes the call of the signature with the caller's arguments; `target` where the signature has only the
// shape.
uint64_t CallPlatform(const Signature& signature, const GuestCall& caller, FARPROC target = nullptr);

// ---- Writing rows -------------------------------------------------------------------------------------

template <typename Function> struct Arity;
template <typename R, typename... Parameters> struct Arity<R (*)(Parameters...)> {
    static constexpr size_t Count = sizeof...(Parameters);
    static constexpr bool ReturnsNothing = std::is_void_v<R>;
};

template <typename T> T FromWord(uint64_t word)
{
    if constexpr (std::is_pointer_v<T>)
        return reinterpret_cast<T>(static_cast<uintptr_t>(word));
    else
        return static_cast<T>(word);
}
template <typename T> uint64_t ToWord(T value)
{
    if constexpr (std::is_pointer_v<T>)
        return reinterpret_cast<uintptr_t>(value);
    else
        return static_cast<uint64_t>(static_cast<int64_t>(value));
}

template <typename R, typename... Parameters, size_t... Index>
uint64_t CallWithWords(R (*function)(Parameters...), const uint64_t* words, std::index_sequence<Index...>)
{
    if constexpr (std::is_void_v<R>) {
        function(FromWord<Parameters>(words[Index])...);
        return 0;
    } else {
        return ToWord(function(FromWord<Parameters>(words[Index])...));
    }
}

template <auto Function> uint64_t CallWords(const uint64_t* words, FARPROC)
{
    return CallWithWords(Function, words, std::make_index_sequence<Arity<decltype(Function)>::Count>());
}
template <typename Function> uint64_t CallTarget(const uint64_t* words, FARPROC target)
{
    return CallWithWords(reinterpret_cast<Function>(reinterpret_cast<void*>(target)), words,
                         std::make_index_sequence<Arity<Function>::Count>());
}

template <auto Function, typename... Arguments>
constexpr Signature Row(const char* name, Result result, Arguments... arguments)
{
    static_assert(sizeof...(Arguments) == Arity<decltype(Function)>::Count, "one kind for each argument");
    return {name, result, CallWords<Function>, sizeof...(Arguments), {arguments...}};
}

// A row for a procedure that is only known as the program runs.
template <typename Function, typename... Arguments>
constexpr Signature ExportRow(const char* name, Result result, Arguments... arguments)
{
    static_assert(sizeof...(Arguments) == Arity<Function>::Count, "one kind for each argument");
    return {name, result, CallTarget<Function>, sizeof...(Arguments), {arguments...}};
}
