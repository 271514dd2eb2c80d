@echo Hello from Example Product.
