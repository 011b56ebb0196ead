// Stands in for the header by which the programs find the library's calls: here each call passes by a fuzzer on its way
// to the library and back.
#pragma once

#include <cstddef>
#include <dlfcn.h>
#include <string>
#include <type_traits>
#include <vector>

#include "ktraid.h"

// Bytes that the library may write to.
struct AnswerBytes {
    void* at;
    size_t size;
};

// Called with the call and its numbers, as in "KT_Flash_Bin 0 15 3", before the library is.
extern void (*beforeCall)(const std::string& call);
// Called with everything that the library may have filled, and its status; answers the status that the caller gets.
extern KT_U8 (*afterCall)(const char* name, const std::vector<AnswerBytes>& answers, KT_U8 status);

template <class T>
void describe(std::string& call, T argument) {
    if constexpr (std::is_integral_v<T>) call += " " + std::to_string(argument);
}

template <class T>
void collect(std::vector<AnswerBytes>& answers, T argument) {
    using Record = std::remove_pointer_t<T>;
    if constexpr (std::is_pointer_v<T> && !std::is_const_v<Record>) {
        size_t size = sizeof(Record);
        // Of a flash page, its head and the beginning of the data.
        if constexpr (std::is_same_v<Record, _Flash_Data>) size = 64;
        if constexpr (requires { argument->header.numRequested; }) {
            size = sizeof(_RequestHeader) + argument->header.numRequested * (sizeof(Record) - sizeof(_RequestHeader));
        }
        answers.push_back({argument, size});
    }
}

template <class Call>
struct PassingCall;
template <class Result, class... Arguments>
struct PassingCall<Result (*)(Arguments...)> {
    const char* name;

    Result operator()(Arguments... arguments) const {
        std::string call = name;
        (describe(call, arguments), ...);
        if (beforeCall != nullptr) beforeCall(call);
        const auto real = reinterpret_cast<Result (*)(Arguments...)>(dlsym(RTLD_NEXT, name));
        std::vector<AnswerBytes> answers;
        (collect(answers, arguments), ...);
        if constexpr (std::is_same_v<Result, KT_U8>) {
            const KT_U8 status = real(arguments...);
            return afterCall != nullptr ? afterCall(name, answers, status) : status;
        } else {
            return real(arguments...);
        }
    }
};

template <class Call>
PassingCall<Call> libraryCall(const char* name) {
    return {name};
}
