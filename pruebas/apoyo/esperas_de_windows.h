#pragma once

/// Corrige las esperas con las que Qt se entera de que otro proceso terminó: wine 8 puede avisar
/// después de que se dejó de esperar, cuando lo que el aviso usa ya no existe. Pasa una vez cada
/// varios cientos de procesos, con la máquina ocupada.
void corregirEsperasDeWindows();
