// Tests of the per-thread message queue: order, cross-thread wake-up and the empty-queue hooks.
#include "base/ColaMensajes.h"

#include <chrono>
#include <functional>
#include <future>
#include <string>
#include <thread>

#include <gtest/gtest.h>

namespace cad
{
namespace
{

// Scenario: messages posted and run singly and in bulk, one of them posting another, one
// re-posting itself.
// Invariant: posting order is kept; posting from inside a message neither deadlocks nor
// runs at once; ejecutaPendientes runs only what was queued when it began.
TEST(ColaMensajesTest, OrdenYMensajesQuePublican)
{
    ColaMensajes cola;
    std::string orden;
    cola.publica([&] { orden += 'a'; });
    cola.publica(
        [&]
        {
            orden += 'b';
            cola.publica([&] { orden += 'd'; });
        });
    cola.publica([&] { orden += 'c'; });
    cola.publica(ColaMensajes::Mensaje());  // empty: ignored
    EXPECT_EQ(cola.pendientes(), 3u);
    EXPECT_TRUE(cola.ejecutaUno());
    EXPECT_EQ(orden, "a");
    EXPECT_EQ(cola.ejecutaPendientes(), 2u);
    EXPECT_EQ(orden, "abc");
    EXPECT_EQ(cola.ejecutaPendientes(), 1u);
    EXPECT_EQ(orden, "abcd");
    EXPECT_TRUE(cola.vacia());

    int vueltas = 0;  // bounded so that a runaway ejecutaPendientes fails instead of hanging
    std::function<void()> rebota = [&]
    {
        if (++vueltas < 5)
        {
            cola.publica(rebota);
        }
    };
    cola.publica(rebota);
    EXPECT_EQ(cola.ejecutaPendientes(), 1u);
    EXPECT_EQ(cola.pendientes(), 1u);
}

// Scenario: a thread waits in ejecutaUno on its own delHilo() queue; the main thread posts
// to it. The alVaciarse hook reports that the owner reached the wait, so no sleep is needed.
// Invariant: the post wakes the owner and the message runs on the owner's thread; each
// thread has its own queue.
TEST(ColaMensajesTest, PublicarDesdeOtroHiloDespiertaAlQueEspera)
{
    std::promise<ColaMensajes*> colaLista;
    std::promise<void> esperando;
    std::promise<std::thread::id> ejecutadoEn;
    std::future<std::thread::id> hilo = ejecutadoEn.get_future();
    std::future<void> enEspera = esperando.get_future();
    std::thread dueno(
        [&]
        {
            ColaMensajes& propia = ColaMensajes::delHilo();
            propia.setAlVaciarse([&] { esperando.set_value(); });
            colaLista.set_value(&propia);
            propia.ejecutaUno();
        });
    ColaMensajes* cola = colaLista.get_future().get();
    EXPECT_NE(cola, &ColaMensajes::delHilo());
    EXPECT_EQ(enEspera.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    cola->publica([&] { ejecutadoEn.set_value(std::this_thread::get_id()); });

    if (hilo.wait_for(std::chrono::seconds(30)) != std::future_status::ready)
    {
        ADD_FAILURE() << "ejecutaUno was not woken by a post from another thread";
        dueno.detach();
        return;
    }
    const std::thread::id idDueno = dueno.get_id();
    dueno.join();
    EXPECT_EQ(hilo.get(), idDueno);
}

// Scenario: ejecutaUno with an external step (set throughout, so nothing can hang) and an
// alVaciarse hook, on a full queue, an empty one, and with a hook that posts a cancel.
// Invariant: a queued message runs instead of hook and step; on an empty queue the hook runs,
// then, if it posted nothing, the step runs once and ejecutaUno returns false.
TEST(ColaMensajesTest, AlVaciarseYPasoExterno)
{
    ColaMensajes cola;
    std::string orden;
    cola.setPasoExterno([&] { orden += "paso,"; });
    cola.setAlVaciarse([&] { orden += "vacia,"; });
    cola.publica([&] { orden += "mensaje,"; });
    EXPECT_TRUE(cola.ejecutaUno());
    EXPECT_FALSE(cola.ejecutaUno());
    EXPECT_EQ(orden, "mensaje,vacia,paso,");

    cola.setAlVaciarse([&] { cola.publica([&] { orden += "cancela"; }); });
    EXPECT_TRUE(cola.ejecutaUno());
    EXPECT_EQ(orden, "mensaje,vacia,paso,cancela");
    EXPECT_TRUE(cola.vacia());
}

}  // namespace
}  // namespace cad
