"""Says what pyproject.toml cannot: the package holds compiled files, and so is no package for every machine."""
from setuptools import Distribution, setup


class CompiledDistribution(Distribution):
    def has_ext_modules(self):
        return True


setup(distclass=CompiledDistribution)
