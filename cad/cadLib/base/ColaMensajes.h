// Per-thread message queue: the wait step of interactive commands and the host's event pump.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

namespace cad
{

// Any thread may post; only the owning thread runs. The editor's blocking wait is one
// ejecutaUno() on its thread's queue, and a host pumps with `for (;;) cola.ejecutaUno();`.
// Messages always run outside the queue's lock, so a message may post further messages.
class ColaMensajes
{
public:
    using Mensaje = std::function<void()>;

    ColaMensajes() = default;
    ColaMensajes(const ColaMensajes&) = delete;
    ColaMensajes& operator=(const ColaMensajes&) = delete;

    // The calling thread's queue, made on first use and destroyed when the thread ends;
    // another thread may keep a reference to post to it while the owner lives.
    static ColaMensajes& delHilo();

    // Appends a message; from any thread, never waits for the owner. An empty function is
    // ignored, since running it could only throw.
    void publica(Mensaje mensaje);

    // Runs one message on the calling thread. On an empty queue the alVaciarse hook runs
    // first; if the queue is still empty, the external step runs once when one is set
    // (result false), and otherwise this waits for a message. True when a message ran.
    bool ejecutaUno();

    // Runs the messages queued at the call, in order, without waiting; messages they post
    // stay for later, so a message that re-posts itself can't keep this going. Returns how
    // many ran.
    size_t ejecutaPendientes();

    // One blocking step of a foreign event loop, run by ejecutaUno() in place of waiting.
    // An empty function removes it.
    void setPasoExterno(Mensaje paso);
    // Run by ejecutaUno() when it finds the queue empty, before the external step or the
    // wait; tests use it to fail and post a cancel instead of hanging. Empty removes it.
    void setAlVaciarse(Mensaje gancho);

    size_t pendientes() const;
    bool vacia() const;

private:
    // Takes the first message under the lock; false on an empty queue.
    bool saca(Mensaje& mensaje);

    mutable std::mutex mMutex;
    std::condition_variable mHayMensajes;
    std::deque<Mensaje> mMensajes;
    Mensaje mPasoExterno;
    Mensaje mAlVaciarse;
};

}  // namespace cad
