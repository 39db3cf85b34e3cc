"""Las órdenes de herramientas/publicar."""

import sys

from . import avisos, paquete
from .carpeta import reunir
from .catalogo import COMPONENTES, exigir_componente
from .nombres import exigir_version
from .paquete import Paquete
from .problemas import Codigo, Problema
from .servidor import Servidor, borrador, colocar, escribir, escribir_json, leer_versiones


def publicar_paquete(pedido):
    """Arma el paquete de un componente y lo nombra en el manifiesto."""
    componente, version = pedido.componente, pedido.version
    _exigir(componente, version)
    if pedido.desde_version is not None:
        exigir_version(pedido.desde_version)
    servidor = Servidor(pedido.servidor, pedido.manifiesto)
    carpeta = pedido.carpeta.resolve()
    _exigir_separadas(carpeta, servidor.carpeta)
    contenido = reunir(carpeta, componente)
    if contenido.omitidos:
        print(f"No va en el paquete: {', '.join(contenido.omitidos)}.")
    _avisar(avisos.de_carpeta(contenido, componente))

    with servidor.reservado():
        versiones = leer_versiones(servidor.manifiesto)
        archivos = _archivos_a_publicar(servidor, pedido, contenido.archivos, versiones)
        destino = servidor.paquete(componente, version)
        ya_esta = _ya_publicado(destino, archivos, pedido)
        if pedido.reemplazar and not ya_esta and destino.exists():
            _avisar(avisos.de_reemplazo(componente, version))
        _publicar(servidor, pedido, None if ya_esta else archivos, versiones)
        bytes_ = destino.stat().st_size
    _avisar(avisos.de_tamano(bytes_))
    print(f"{'Ya estaba' if ya_esta else 'Listo'}: {destino} "
          f"({avisos.cantidad(archivos, 'archivo')}, {avisos.tamano(bytes_)}).")
    _contar_cambio(servidor, componente, versiones.get(componente), version)


def apuntar(pedido):
    """Nombra en el manifiesto un paquete que ya está publicado."""
    componente, version = pedido.componente, pedido.version
    _exigir(componente, version)
    servidor = Servidor(pedido.servidor, pedido.manifiesto)
    with servidor.reservado():
        versiones = leer_versiones(servidor.manifiesto)
        with Paquete(servidor.paquete(componente, version)) as publicado:
            publicado.exigir_sano()
            if desde := publicado.parcial_desde():
                _avisar(avisos.de_parcial(componente, desde))
        _publicar(servidor, pedido, None, versiones)
    _contar_cambio(servidor, componente, versiones.get(componente), version)


def revisar(pedido):
    """Comprueba que cada versión del manifiesto tenga su paquete entero."""
    servidor = Servidor(pedido.servidor, pedido.manifiesto)
    if not servidor.manifiesto.exists():
        raise Problema(Codigo.MANIFIESTO, f"No existe {servidor.manifiesto}.")
    malos = 0
    for componente, version in sorted(leer_versiones(servidor.manifiesto).items()):
        estado = _estado(servidor, componente, version)
        malos += estado is not None
        print(f"{componente} {version}: {estado or 'bien'}")
    if malos:
        raise Problema(Codigo.PAQUETE, f"De lo que nombra {servidor.manifiesto}, hay que arreglar "
                       f"{malos}.")


def _estado(servidor, componente, version):
    """Qué tiene de malo una entrada del manifiesto; None si está bien."""
    if componente not in COMPONENTES:
        return "ningún lanzador conoce este componente"
    if not isinstance(version, str):
        return "la versión no es un texto"
    try:
        exigir_version(version)
        with Paquete(servidor.paquete(componente, version)) as publicado:
            publicado.exigir_sano()
    except Problema as problema:
        return str(problema)
    return None


def armar_versiones(pedido):
    """Escribe el primer versiones.json de una instalación."""
    publicadas = leer_versiones(pedido.manifiesto) if pedido.manifiesto else {}
    instaladas = {}
    for instalado in pedido.instalados:
        componente, _, version = instalado.partition("=")
        if "=" not in instalado:
            version = publicadas.get(componente)
        exigir_componente(componente)
        if not isinstance(version, str):
            raise Problema(Codigo.VERSIONES, f"No se sabe qué versión de {componente} está "
                           f"instalada: escribí {componente}=VERSIÓN o indicá un manifiesto que la "
                           "diga.")
        if componente in instaladas:
            raise Problema(Codigo.VERSIONES, f"{componente} está dos veces.")
        exigir_version(version)
        instaladas[componente] = version
    if pedido.salida.exists() and not pedido.reemplazar:
        raise Problema(Codigo.VERSIONES, f"Ya existe {pedido.salida}, que anota lo instalado. Para "
                       "pisarlo, agregá --reemplazar.")
    if not pedido.salida.parent.is_dir():
        raise Problema(Codigo.CARPETA, f"No existe la carpeta {pedido.salida.parent}.")
    with borrador(pedido.salida) as provisorio:
        escribir_json(provisorio, instaladas)
        colocar(provisorio, pedido.salida)
    print(f"Listo: {pedido.salida} ({avisos.cantidad(instaladas, 'componente')}).")


def _exigir(componente, version):
    exigir_componente(componente)
    exigir_version(version)


def _exigir_separadas(carpeta, servidor):
    if carpeta == servidor or carpeta in servidor.parents or servidor in carpeta.parents:
        raise Problema(Codigo.CARPETA, "La carpeta del componente y la del servidor no pueden "
                       f"estar una dentro de la otra: {carpeta} y {servidor}.")


def _archivos_a_publicar(servidor, pedido, archivos, versiones):
    """Todos o, en un paquete parcial, los que cambiaron; avisa lo que no se va a poder hacer."""
    componente, desde = pedido.componente, pedido.desde_version
    anterior = desde if desde is not None else versiones.get(componente)
    if desde == pedido.version:
        raise Problema(Codigo.VERSION, "Un paquete parcial va de una versión a otra distinta.")
    if desde is None:
        _avisar(_avisos_desde_publicada(servidor, pedido, archivos, anterior))
        return archivos
    with Paquete(servidor.paquete(componente, desde)) as base:
        base.exigir_sano()
        if base.parcial_desde():
            raise Problema(Codigo.PAQUETE, f"El paquete de {componente} {desde} es parcial: no se "
                           "puede saber qué cambió desde esa versión.")
        cambiados = base.cambiados(archivos)
        if not cambiados:
            raise Problema(Codigo.SIN_CAMBIOS, f"Nada cambió desde {componente} {desde}.")
        _avisar(avisos.de_parcial(componente, desde))
        _avisar(avisos.de_cambio(base.nombres(), archivos, desde))
    return cambiados


def _avisos_desde_publicada(servidor, pedido, archivos, anterior):
    if not isinstance(anterior, str) or anterior == pedido.version:
        return []
    try:
        exigir_version(anterior)
        with Paquete(servidor.paquete(pedido.componente, anterior)) as publicado:
            if publicado.parcial_desde():
                return []
            return avisos.de_cambio(publicado.nombres(), archivos, anterior)
    except Problema:
        return []  # sin el paquete anterior a mano no hay con qué comparar


def _ya_publicado(destino, archivos, pedido):
    """Si `destino` ya es ese paquete. Falla si es otro y no se pidió reemplazarlo."""
    if not destino.exists():
        return False
    try:
        with Paquete(destino) as publicado:
            if publicado.es_igual(archivos, pedido.desde_version):
                return True
    except Problema:
        if not pedido.reemplazar:
            raise
    if not pedido.reemplazar:
        raise Problema(Codigo.YA_PUBLICADA, f"{pedido.componente} {pedido.version} ya está "
                       "publicado con otro contenido. Usá otra versión; si nadie la bajó todavía, "
                       "agregá --reemplazar.")
    return False


def _publicar(servidor, pedido, archivos, versiones):
    """Coloca el paquete, si hay archivos, y después el manifiesto que lo nombra.

    Los dos se escriben enteros antes de colocar el primero: si el disco se llena no cambió nada.
    """
    destino = servidor.paquete(pedido.componente, pedido.version)
    nuevas = versiones | {pedido.componente: pedido.version}
    with borrador(destino) as paquete_nuevo, borrador(servidor.manifiesto) as manifiesto_nuevo:
        if archivos is not None:
            escribir(paquete_nuevo,
                     lambda salida: paquete.escribir(salida, archivos, pedido.desde_version))
            _comprobar_paquete(paquete_nuevo, archivos, pedido.desde_version)
        if nuevas != versiones:
            escribir_json(manifiesto_nuevo, nuevas)
        if archivos is not None:
            colocar(paquete_nuevo, destino)
        if nuevas != versiones:
            colocar(manifiesto_nuevo, servidor.manifiesto)
    if leer_versiones(servidor.manifiesto) != nuevas:
        raise Problema(Codigo.COMPROBACION, f"{servidor.manifiesto} no quedó como se escribió.")


def _comprobar_paquete(ruta, archivos, desde):
    try:
        with Paquete(ruta) as escrito:
            escrito.exigir_sano()
            bien = escrito.es_igual(archivos, desde)
    except Problema as problema:
        raise Problema(Codigo.COMPROBACION, f"{problema} No se publicó.") from problema
    if not bien:
        raise Problema(Codigo.COMPROBACION, "El paquete no quedó igual que la carpeta: ¿cambió "
                       "algo en ella mientras se armaba? No se publicó.")


def _contar_cambio(servidor, componente, antes, version):
    if antes == version:
        print(f"{servidor.manifiesto} ya decía {componente} {version}.")
    else:
        print(f"{servidor.manifiesto}: {componente} {antes or '(no estaba)'} → {version}")


def _avisar(textos):
    for texto in textos:
        print(f"Aviso: {texto}", file=sys.stderr)
