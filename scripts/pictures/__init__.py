"""The drawings behind make-pictures: one module for each family of pictures.

Every module has a function pictures() that yields pairs of a name and the text
of an SVG file. Shapes are paths and circles with plain or gradient paint, and
straight edges lie on whole points: that is what stays crisp at scale 1.
"""
