// The one way a host string enters the kernel: an owned, zero-terminated UTF-8 copy.
#pragma once

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

namespace Fendrix
{

// The kernel must copy what it keeps: the buffer goes with the scope, also on an exception.
class constCharPtr
{
public:
    explicit constCharPtr(const std::string& texto)
        : mTexto(static_cast<char*>(std::malloc(texto.size() + 1)))
    {
        if (mTexto == nullptr)
        {
            throw std::bad_alloc();
        }
        std::memcpy(mTexto, texto.data(), texto.size());
        mTexto[texto.size()] = '\0';
    }
    ~constCharPtr() { std::free(mTexto); }
    constCharPtr(const constCharPtr&) = delete;
    constCharPtr& operator=(const constCharPtr&) = delete;

    const char* c_str() const { return mTexto; }

private:
    char* mTexto;
};

}  // namespace Fendrix
