"""Lo que una persona que usa lector de pantalla encuentra en la ventana de un programa."""

from dataclasses import dataclass, field

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from espera import esperar  # noqa: E402

ELEGIBLES = (Atspi.Role.PAGE_TAB, Atspi.Role.LIST_ITEM)


@dataclass
class Control:
    """Un control tal como se lo vio: si la ventana cambia, hay que volver a buscarlo."""

    rol: str
    nombre: str
    descripcion: str
    estados: frozenset
    profundidad: int
    objeto: object = field(repr=False)

    @property
    def habilitado(self):
        return "enabled" in self.estados

    @property
    def enfocado(self):
        return "focused" in self.estados

    @property
    def tildado(self):
        return "checked" in self.estados

    def centro(self):
        """El punto medio, en la pantalla."""
        lugar = self.objeto.get_extents(Atspi.CoordType.SCREEN)
        return lugar.x + lugar.width // 2, lugar.y + lugar.height // 2

    def texto(self):
        """Lo que hay escrito en un campo."""
        return Atspi.Text.get_text(self.objeto, 0, -1)


class Programa:
    """Los controles a la vista de un proceso."""

    def __init__(self, pid):
        self.pid = pid

    def controles(self):
        """Todos los controles a la vista, en el orden de la ventana; ninguno si no responde."""
        try:
            raiz = self._raiz()
            return list(self._recorrer(raiz)) if raiz else []
        except GLib.Error:
            return []

    def hay(self, rol, nombre=None):
        """El primer control a la vista con ese rol y (si se da) ese nombre, o None."""
        return next((control for control in self.controles()
                     if control.rol == rol and nombre in (None, control.nombre)), None)

    def buscar(self, rol, nombre=None):
        """Lo mismo, pero espera a que aparezca."""
        return esperar(f"{rol} «{nombre}»", lambda: self.hay(rol, nombre))

    def todos(self, rol):
        return [control for control in self.controles() if control.rol == rol]

    def enfocado(self):
        """El control que tiene el teclado: el de más adentro, si una lista lo comparte."""
        enfocados = [control for control in self.controles() if control.enfocado]
        return enfocados[-1] if enfocados else None

    def esperar_foco(self, rol, nombre=None):
        """Espera a que el teclado esté en ese control."""
        def llego():
            return next((control for control in self.controles() if control.enfocado
                         and control.rol == rol and nombre in (None, control.nombre)), None)
        return esperar(lambda: f"el teclado en {rol} «{nombre}»; está en {self.enfocado()}", llego)

    def describir(self):
        """El árbol de controles a la vista, para leerlo cuando algo falla."""
        return "\n".join(f"{'  ' * control.profundidad}{control.rol} «{control.nombre}»"
                         f"{' [teclado]' if control.enfocado else ''}"
                         for control in self.controles())

    def _raiz(self):
        escritorio = Atspi.get_desktop(0)
        escritorio.set_cache_mask(Atspi.Cache.NONE)
        for i in range(escritorio.get_child_count()):
            programa = escritorio.get_child_at_index(i)
            if programa and programa.get_process_id() == self.pid:
                return programa
        return None

    def _recorrer(self, objeto, profundidad=0, estados_padre=frozenset()):
        for i in range(objeto.get_child_count()):
            hijo = objeto.get_child_at_index(i)
            if not hijo:
                continue
            estados = frozenset(e.value_nick for e in hijo.get_state_set().get_states())
            if "showing" not in estados:
                continue
            # Qt da por enfocado al elegido de una lista aunque el teclado esté en otra parte.
            if hijo.get_role() in ELEGIBLES and "focused" not in estados_padre:
                estados -= {"focused"}
            yield Control(hijo.get_role_name(), hijo.get_name(), hijo.get_description(), estados,
                          profundidad, hijo)
            yield from self._recorrer(hijo, profundidad + 1, estados)
