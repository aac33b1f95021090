// Per-thread message queue: posting, the blocking step and the hooks that replace waiting.
#include "base/ColaMensajes.h"

#include <utility>

namespace cad
{

ColaMensajes& ColaMensajes::delHilo()
{
    thread_local ColaMensajes cola;
    return cola;
}

void ColaMensajes::publica(Mensaje mensaje)
{
    if (!mensaje)
    {
        return;
    }
    std::lock_guard<std::mutex> bloqueo(mMutex);
    mMensajes.push_back(std::move(mensaje));
    // Notified under the lock: otherwise the owner could take the message, run it and end
    // its thread, destroying this queue, while the poster is still inside notify_one.
    mHayMensajes.notify_one();
}

bool ColaMensajes::saca(Mensaje& mensaje)
{
    std::lock_guard<std::mutex> bloqueo(mMutex);
    if (mMensajes.empty())
    {
        return false;
    }
    mensaje = std::move(mMensajes.front());
    mMensajes.pop_front();
    return true;
}

bool ColaMensajes::ejecutaUno()
{
    Mensaje mensaje;
    if (!saca(mensaje))
    {
        // Hooks are copied under the lock and run outside it: they may post, or replace
        // themselves.
        Mensaje gancho;
        {
            std::lock_guard<std::mutex> bloqueo(mMutex);
            gancho = mAlVaciarse;
        }
        if (gancho)
        {
            gancho();
        }
        if (!saca(mensaje))
        {
            Mensaje paso;
            {
                std::lock_guard<std::mutex> bloqueo(mMutex);
                paso = mPasoExterno;
            }
            if (paso)
            {
                paso();
                return false;
            }
            std::unique_lock<std::mutex> bloqueo(mMutex);
            mHayMensajes.wait(bloqueo, [this] { return !mMensajes.empty(); });
            mensaje = std::move(mMensajes.front());
            mMensajes.pop_front();
        }
    }
    mensaje();
    return true;
}

size_t ColaMensajes::ejecutaPendientes()
{
    const size_t numero = pendientes();
    size_t ejecutados = 0;
    Mensaje mensaje;
    // A message run here may itself call ejecutaPendientes or ejecutaUno and drain the
    // queue, so each take is checked rather than trusting the count.
    while (ejecutados < numero && saca(mensaje))
    {
        ++ejecutados;
        mensaje();
    }
    return ejecutados;
}

void ColaMensajes::setPasoExterno(Mensaje paso)
{
    std::lock_guard<std::mutex> bloqueo(mMutex);
    mPasoExterno = std::move(paso);
}

void ColaMensajes::setAlVaciarse(Mensaje gancho)
{
    std::lock_guard<std::mutex> bloqueo(mMutex);
    mAlVaciarse = std::move(gancho);
}

size_t ColaMensajes::pendientes() const
{
    std::lock_guard<std::mutex> bloqueo(mMutex);
    return mMensajes.size();
}

bool ColaMensajes::vacia() const
{
    return pendientes() == 0;
}

}  // namespace cad
