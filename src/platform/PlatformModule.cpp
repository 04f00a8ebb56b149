// Placeholder translation unit so that the library builds before its adapters exist.
