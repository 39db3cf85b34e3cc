"""Las piezas de herramientas/publicar, una por archivo."""
