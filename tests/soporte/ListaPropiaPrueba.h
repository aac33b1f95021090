// Test support: the checks every owned list of the document passes (layers, materials, text
// styles, views), written once and instantiated by each list's test file with its case.
#pragma once

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "soporte/BloquesPrueba.h"
#include "soporte/ObjetoEnMemoria.h"

namespace cad::prueba
{

// A case gives `Lista`, the section tag `kSeccion`, and `llena(Lista&)`, which appends two
// items of different names such that each stored field differs from a freshly read item's
// in one of them, so that a reader which skips a field changes the bytes saved again. A list
// with `busca` also gives `kOtraCaja`, the second item's name in another case.
template <class Caso>
class ListaPropia : public ::testing::Test
{
protected:
    ListaPropia()
    {
        Caso::llena(origen);
        bytes = bytesDe(origen);
    }
    // The item blocks, behind the 24-byte section header, have a 4-byte tag field and a u16
    // length counted from itself.
    size_t finPrimero() const { return 28 + num(bytes, 28, 2); }

    typename Caso::Lista origen;
    typename Caso::Lista destino;  // what each test reads into
    Bytes bytes;
};

TYPED_TEST_SUITE_P(ListaPropia);

// The section: its tag, a u64 length counted from the length field, the u64 count, the
// items. A read first deletes what the list held. Bytes behind an item's known fields, as a
// newer version writes them, stay with that item and bytes behind the last item with the
// list; the next item still reads from its place, and a save writes everything back where it
// stood. busca is exact and case-sensitive.
TYPED_TEST_P(ListaPropia, VueltaConColasYBusca)
{
    Bytes b = this->bytes;
    EXPECT_EQ(std::string(b.begin(), b.begin() + 8), TypeParam::kSeccion + std::string(1, '\0'));
    EXPECT_EQ(num(b, 8, 8), b.size() - 8);
    EXPECT_EQ(num(b, 16, 8), 2U);
    const Bytes delItem = {0xDE, 0xAD, 0xBE, 0xEF, 0x01, 0x02};
    const Bytes deLaLista = {0xC0, 0xDE};
    b.insert(b.begin() + static_cast<long>(this->finPrimero()), delItem.begin(), delItem.end());
    b.insert(b.end(), deLaLista.begin(), deLaLista.end());
    ponNum(b, 28, num(b, 28, 2) + 6, 2);
    ponNum(b, 8, num(b, 8, 8) + 8, 8);

    auto& leida = this->destino;
    TypeParam::llena(leida);
    ASSERT_TRUE(leeDe(b, leida));
    ASSERT_EQ(leida.size(), 2U);
    EXPECT_EQ(colaDe(*leida[0]), delItem);
    EXPECT_EQ(colaDe(*leida[1]), Bytes{});
    EXPECT_EQ(colaDe(leida), deLaLista);
    EXPECT_EQ(bytesDe(leida), b);
    if constexpr (requires { leida.busca(""); })
    {
        EXPECT_EQ(leida.busca(leida[0]->nombre), leida[0]);
        EXPECT_EQ(leida.busca(leida[1]->nombre), leida[1]);
        EXPECT_EQ(leida.busca(TypeParam::kOtraCaja), nullptr);
    }
}

// An item of another tag ends the read, which succeeds with no item and keeps everything
// behind that item's tag and length as the list's tail. A section of another tag fails,
// leaves the list empty and keeps the section's whole body.
TYPED_TEST_P(ListaPropia, EtiquetasAjenas)
{
    Bytes b = this->bytes;
    b[24] = 'X';
    EXPECT_TRUE(leeDe(b, this->destino));
    EXPECT_TRUE(this->destino.empty());
    EXPECT_EQ(colaDe(this->destino), Bytes(b.begin() + 30, b.end()));

    b = this->bytes;
    b[6] = '2';
    TypeParam::llena(this->destino);
    EXPECT_FALSE(leeDe(b, this->destino));
    EXPECT_TRUE(this->destino.empty());
    EXPECT_EQ(colaDe(this->destino), Bytes(b.begin() + 16, b.end()));
}

// Untrusted input. Every cut of a valid file reads to false without a fault, keeping the
// items that came whole. A count far beyond the file ends with the file; a count negative
// as signed 64-bit reads no item, and the items become the list's tail.
TYPED_TEST_P(ListaPropia, CortesYCuentasMentirosas)
{
    const Bytes& b = this->bytes;
    for (size_t corte = 0; corte < b.size(); ++corte)
    {
        typename TypeParam::Lista cortada;
        EXPECT_FALSE(leeDe(b, cortada, corte)) << corte;
        EXPECT_EQ(cortada.size(), corte >= this->finPrimero() ? 1U : 0U) << corte;
    }
    Bytes cuenta = b;
    ponNum(cuenta, 16, 0x7FFFFFFFFFFFFFFFULL, 8);
    EXPECT_TRUE(leeDe(cuenta, this->destino));
    EXPECT_EQ(this->destino.size(), 2U);
    ponNum(cuenta, 16, 0x80FFFFFFFFFFFFFFULL, 8);
    EXPECT_TRUE(leeDe(cuenta, this->destino));
    EXPECT_TRUE(this->destino.empty());
    EXPECT_EQ(colaDe(this->destino), Bytes(b.begin() + 24, b.end()));
}

REGISTER_TYPED_TEST_SUITE_P(ListaPropia, VueltaConColasYBusca, EtiquetasAjenas,
                            CortesYCuentasMentirosas);

}  // namespace cad::prueba
