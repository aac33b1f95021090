// Material: the "Mt1" block, the copy rule and the shine clamp.
#include "documento/Material.h"

#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

namespace
{

const Vector3D<float> kTerceraComponenteCopia(0.8F, 0.8F, 0.8F);

}  // namespace

Material::Material(int16_t idMaterial) : id(idMaterial) {}

Material::Material(const Material& otro)
    : ObjetoCAD(otro),
      idExterno(otro.idExterno),
      id(otro.id),
      textura_(otro.textura_),
      color_(otro.color_),
      brillo_(otro.brillo_),
      componentes{{}, {}, kTerceraComponenteCopia}
{
}

Material& Material::operator=(const Material& otro)
{
    if (this != &otro)
    {
        ObjetoCAD::operator=(otro);
        idExterno = otro.idExterno;
        id = otro.id;
        textura_ = otro.textura_;
        color_ = otro.color_;
        brillo_ = otro.brillo_;
        componentes[0] = {};
        componentes[1] = {};
        componentes[2] = kTerceraComponenteCopia;
    }
    return *this;
}

void Material::setBrillo(float b)
{
    if (b >= 1.0F)
    {
        brillo_ = 1.0F;
    }
    else if (b <= 0.0F)
    {
        brillo_ = 0.0F;
    }
    else
    {
        brillo_ = b;
    }
}

void Material::setComponentes(const Vector3D<float>& a, const Vector3D<float>& b,
                              const Vector3D<float>& c)
{
    componentes[0] = a;
    componentes[1] = b;
    componentes[2] = c;
}

Material* Material::clona() const
{
    return new Material(*this);
}

bool Material::operator==(const Material& otro) const
{
    return textura_ == otro.textura_ && color_ == otro.color_ && brillo_ == otro.brillo_;
}

void Material::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque16(etiqueta()));
    w.escribeLongitud64(ObjetoCAD::id);
    w.escribeCortoSinSigno(static_cast<uint16_t>(id));
    w.escribeEnteroSinSigno(static_cast<uint32_t>(idExterno));
    w.escribeCadena(textura_);
    w.escribeEntero(static_cast<int32_t>(color_));
    w.escribeFlotante(brillo_);
    escribeDatosDesconocidos(w);
    bloque.reset();  // patches the length
}

bool Material::lee(SerializadorLecturaBase& r)
{
    std::unique_ptr<BloqueSerializacion> bloque(r.leeBloque16());
    if (!bloque->esTipo(etiqueta()))
    {
        return false;
    }
    uint16_t idLeido = static_cast<uint16_t>(id);
    uint32_t externoLeido = static_cast<uint32_t>(idExterno);
    int32_t colorLeido = static_cast<int32_t>(color_);
    bool ok = r.leeLongitud64(ObjetoCAD::id);
    ok = r.leeCortoSinSigno(idLeido) && ok;
    ok = r.leeEnteroSinSigno(externoLeido) && ok;
    ok = r.leeCadena(textura_) && ok;
    ok = r.leeEntero(colorLeido) && ok;
    ok = r.leeFlotante(brillo_) && ok;
    id = static_cast<int16_t>(idLeido);
    idExterno = static_cast<int32_t>(externoLeido);
    color_ = static_cast<uint32_t>(colorLeido);
    return finLectura(r, bloque.release()) && ok;
}

}  // namespace cad
